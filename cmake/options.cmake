# Compiler options that every target of this tree gets. Results are promised to the bit, so that
# no compiler may fuse a multiplication with an addition.
add_library(discoplan-options INTERFACE)
target_compile_options(discoplan-options INTERFACE
  -ffp-contract=off -fno-semantic-interposition -Wall -Wextra -Wconversion -Wshadow $<$<BOOL:${DISCOPLAN_WERROR}>:-Werror>)
