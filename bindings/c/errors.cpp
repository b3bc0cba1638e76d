// SPDX-License-Identifier: MIT
#include "bindings/c/errors.h"

#include <cctype>
#include <utility>

#include "bindings/c/of_thread.h"
#include "data/data_error.h"
#include "discoplan/base/numbers.h"
#include "hosts/headless/whole_file.h"

namespace discoplan::c {
namespace {

struct Last {
  std::string text;
};

template <class Text>
discoplan_status Keep(discoplan_status status, Text&& text) noexcept {
  try {
    std::string& last = OfThread<Last>().text;
    last.clear();  // in case that there is no memory for the next one
    last = std::forward<Text>(text);
  } catch (const std::bad_alloc&) {
  }
  return status;
}

std::string TextOf(const data::DataError& error) {
  const std::string whole = error.what();
  const std::size_t place = whole.size() - error.sentence().size();
  return whole.substr(0, place) + WithFieldNames(error.sentence());
}

discoplan_status StatusOf(Fault fault) {
  switch (fault) {
    case Fault::TypeMismatch:
      return DISCOPLAN_BAD_TYPE;
    case Fault::MemberNotOffered:
      return DISCOPLAN_NO_MEMBER;
    case Fault::FileNotFound:
      return DISCOPLAN_NOT_FOUND;
    default:
      return DISCOPLAN_BAD_ARGUMENT;
  }
}

}  // namespace

std::string WithFieldNames(const std::string& sentence) {
  constexpr std::string_view kCorner = "--origin corner";  // a field is one or the other
  std::string text;
  bool in_option = false;
  for (std::size_t i = 0; i < sentence.size(); ++i) {
    const char letter = sentence[i];
    const char next = i + 1 < sentence.size() ? sentence[i + 1] : ' ';
    const bool starts = sentence.compare(i, 2, "--") == 0 && i + 2 < sentence.size() &&
                        std::islower(static_cast<unsigned char>(sentence[i + 2])) != 0;
    if (sentence.compare(i, kCorner.size(), kCorner) == 0) {
      text += "corner";
      i += kCorner.size() - 1;
    } else if (starts) {
      in_option = true;
      ++i;
    } else if (in_option && letter == '-' && std::islower(static_cast<unsigned char>(next)) != 0) {
      text += '_';
    } else {
      in_option = in_option && std::islower(static_cast<unsigned char>(letter)) != 0;
      text += letter;
    }
  }
  return text;
}

void RaiseNamed(std::string_view name, const RunTimeError& error) {
  throw Error(StatusOf(error.fault()), std::string(name) + ": " + error.what());
}

const char* LastError() noexcept {
  try {
    return OfThread<Last>().text.c_str();
  } catch (const std::bad_alloc&) {
    return "";
  }
}

discoplan_status KeepError() noexcept {
  try {
    throw;
  } catch (const Error& error) {
    return Keep(error.status(), error.what());
  } catch (const data::DataError& error) {
    return Keep(DISCOPLAN_BAD_DATA, TextOf(error));
  } catch (const RunTimeError& error) {
    return Keep(StatusOf(error.fault()), error.what());
  } catch (const FileError& error) {
    return Keep(DISCOPLAN_BAD_FILE, error.what());
  } catch (const std::bad_alloc&) {
    return Keep(DISCOPLAN_NO_MEMORY, "there is no memory left for this");
  } catch (const std::length_error&) {
    return Keep(DISCOPLAN_NO_MEMORY, "there is no memory left for this");
  } catch (const std::exception& error) {
    return Keep(DISCOPLAN_FAILED, error.what());
  } catch (...) {
    return Keep(DISCOPLAN_FAILED, "an unknown error");
  }
}

}  // namespace discoplan::c
