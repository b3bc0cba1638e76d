// SPDX-License-Identifier: MIT
// What the C interface is given in error, and from many threads.
#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <fstream>
#include <iterator>
#include <regex>
#include <string>
#include <thread>
#include <vector>

#include "tests/bindings/handles.h"
#include "tests/places.h"

namespace {

TEST(CMisuse, OfHandlesIsRefused) {
  const Wafer wafer(Ramp().Sites());
  int64_t count = 0;
  double numbers[4];
  EXPECT_EQ(discoplan_wafer_statistics(nullptr, numbers, 4), DISCOPLAN_BAD_HANDLE);
  EXPECT_STREQ(discoplan_error(), "the wafer's handle is null");
  EXPECT_EQ(discoplan_lot_count(reinterpret_cast<discoplan_lot*>(wafer.Get()), &count),
            DISCOPLAN_BAD_HANDLE);
  EXPECT_STREQ(discoplan_error(), "the handle is a wafer's, not a lot's");
  int on_stack = 0;
  EXPECT_EQ(discoplan_free(&on_stack), DISCOPLAN_BAD_HANDLE);
  discoplan_wafer* freed = Wafer(Ramp().Sites()).Get();  // freed by now
  EXPECT_EQ(discoplan_wafer_statistics(freed, numbers, 4), DISCOPLAN_BAD_HANDLE);
  EXPECT_EQ(discoplan_free(freed), DISCOPLAN_BAD_HANDLE);
  EXPECT_EQ(discoplan_free(nullptr), DISCOPLAN_OK);
}

/// What a function does with that handle, all else that it is given being null.
struct Taker {
  const char* name;
  const char* kind;
  discoplan_status (*take)(void* handle);
};

template <class T>
T* As(void* handle) {
  return static_cast<T*>(handle);
}

/// Takes what was handed out away again.
template <class Made, class Take>
discoplan_status Freed(Take take) {
  Made* made = nullptr;
  const discoplan_status status = take(&made);
  discoplan_free(made);
  return status;
}

constexpr const char* kWafer = "wafer";
constexpr const char* kLot = "lot";
constexpr const char* kPicture = "picture";
constexpr const char* kResult = "result";
constexpr const char* kControl = "control";

const Taker kTakers[] = {
    {"discoplan_wafer_describe", kWafer,
     [](void* h) { return discoplan_wafer_describe(As<discoplan_wafer>(h), nullptr); }},
    {"discoplan_wafer_sites", kWafer,
     [](void* h) {
       return discoplan_wafer_sites(As<discoplan_wafer>(h), nullptr, nullptr, nullptr);
     }},
    {"discoplan_wafer_statistics", kWafer,
     [](void* h) { return discoplan_wafer_statistics(As<discoplan_wafer>(h), nullptr, 99); }},
    {"discoplan_wafer_figures", kWafer,
     [](void* h) { return discoplan_wafer_figures(As<discoplan_wafer>(h), 0, nullptr, 99); }},
    {"discoplan_wafer_interpolate", kWafer,
     [](void* h) {
       return discoplan_wafer_interpolate(As<discoplan_wafer>(h), 1, nullptr, nullptr, nullptr);
     }},
    {"discoplan_wafer_lattice", kWafer,
     [](void* h) { return discoplan_wafer_lattice(As<discoplan_wafer>(h), nullptr, nullptr, 9); }},
    {"discoplan_wafer_minus", kWafer,
     [](void* h) {
       return Freed<discoplan_wafer>([&](auto** made) {
         return discoplan_wafer_minus(As<discoplan_wafer>(h), nullptr, nullptr, made);
       });
     }},
    {"discoplan_wafers_mean", kWafer,
     [](void* h) {
       discoplan_wafer* wafers[] = {As<discoplan_wafer>(h)};
       return Freed<discoplan_wafer>(
           [&](auto** made) { return discoplan_wafers_mean(wafers, 1, nullptr, made); });
     }},
    {"discoplan_wafer_pack", kWafer,
     [](void* h) { return discoplan_wafer_pack(As<discoplan_wafer>(h), nullptr, 0, nullptr); }},
    {"discoplan_lot_count", kLot,
     [](void* h) { return discoplan_lot_count(As<discoplan_lot>(h), nullptr); }},
    {"discoplan_lot_wafer", kLot,
     [](void* h) {
       return Freed<discoplan_wafer>(
           [&](auto** made) { return discoplan_lot_wafer(As<discoplan_lot>(h), 0, made); });
     }},
    {"discoplan_lot_notes", kLot,
     [](void* h) { return discoplan_lot_notes(As<discoplan_lot>(h), nullptr); }},
    {"discoplan_plot", kWafer,
     [](void* h) {
       return Freed<discoplan_picture>(
           [&](auto** made) { return discoplan_plot(As<discoplan_wafer>(h), nullptr, made); });
     }},
    {"discoplan_sheet", kWafer,
     [](void* h) {
       discoplan_wafer* wafers[] = {As<discoplan_wafer>(h)};
       return Freed<discoplan_picture>(
           [&](auto** made) { return discoplan_sheet(wafers, 1, nullptr, made); });
     }},
    {"discoplan_picture_size", kPicture,
     [](void* h) { return discoplan_picture_size(As<discoplan_picture>(h), nullptr, nullptr); }},
    {"discoplan_picture_rgba", kPicture,
     [](void* h) { return discoplan_picture_rgba(As<discoplan_picture>(h), nullptr, 9, 0); }},
    {"discoplan_picture_encode", kPicture,
     [](void* h) {
       const uint8_t* bytes = nullptr;
       return discoplan_picture_encode(As<discoplan_picture>(h), 0, &bytes, nullptr);
     }},
    {"discoplan_picture_save", kPicture,
     [](void* h) { return discoplan_picture_save(As<discoplan_picture>(h), nullptr); }},
    {"discoplan_result_get", kResult,
     [](void* h) { return discoplan_result_get(As<discoplan_result>(h), nullptr); }},
    {"discoplan_control_resize", kControl,
     [](void* h) { return discoplan_control_resize(As<discoplan_control>(h), 0, 0); }},
    {"discoplan_control_get", kControl,
     [](void* h) { return discoplan_control_get(As<discoplan_control>(h), nullptr, nullptr); }},
    {"discoplan_control_set", kControl,
     [](void* h) { return discoplan_control_set(As<discoplan_control>(h), nullptr, nullptr); }},
    {"discoplan_control_call", kControl,
     [](void* h) {
       return discoplan_control_call(As<discoplan_control>(h), nullptr, nullptr, 2, nullptr);
     }},
    {"discoplan_control_listen", kControl,
     [](void* h) { return discoplan_control_listen(As<discoplan_control>(h), nullptr, nullptr); }},
    {"discoplan_control_mouse", kControl,
     [](void* h) {
       return discoplan_control_mouse(As<discoplan_control>(h), nullptr, nullptr, 0, 0, 0, 0);
     }},
    {"discoplan_control_picture", kControl,
     [](void* h) {
       return Freed<discoplan_picture>(
           [&](auto** made) { return discoplan_control_picture(As<discoplan_control>(h), made); });
     }},
    {"discoplan_control_print", kControl,
     [](void* h) {
       return Freed<discoplan_picture>([&](auto** made) {
         return discoplan_control_print(As<discoplan_control>(h), 0, 0, made);
       });
     }},
};

/// A handle of each kind.
class Handles {
 public:
  Handles() {
    const discoplan_sites sites = ramp_.Sites();
    EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer_), DISCOPLAN_OK);
    const std::string file = discoplan::Example("native_oxide_lot.csv");
    EXPECT_EQ(discoplan_read(file.c_str(), nullptr, &lot_), DISCOPLAN_OK);
    EXPECT_EQ(discoplan_plot(wafer_, nullptr, &picture_), DISCOPLAN_OK);
    const int64_t offsets[] = {0, sites.count};
    discoplan_batch batch{};
    batch.size = sizeof batch;
    batch.wafers = 1;
    batch.offsets64 = offsets;
    batch.count = sites.count;
    batch.x = sites.x;
    batch.y = sites.y;
    batch.value = sites.value;
    EXPECT_EQ(discoplan_batch_run(&batch, &result_), DISCOPLAN_OK);
    EXPECT_EQ(discoplan_control_new("Plot3D", 300, 300, &control_), DISCOPLAN_OK);
  }
  ~Handles() {
    for (const auto& [kind, handle] : All()) EXPECT_EQ(discoplan_free(handle), DISCOPLAN_OK);
  }
  Handles(const Handles&) = delete;
  Handles& operator=(const Handles&) = delete;

  std::vector<std::pair<std::string, void*>> All() const {
    return {{kWafer, wafer_},
            {kLot, lot_},
            {kPicture, picture_},
            {kResult, result_},
            {kControl, control_}};
  }

 private:
  Ramp ramp_;
  discoplan_wafer* wafer_ = nullptr;
  discoplan_lot* lot_ = nullptr;
  discoplan_picture* picture_ = nullptr;
  discoplan_result* result_ = nullptr;
  discoplan_control* control_ = nullptr;
};

TEST(CMisuse, OfHandlesIsRefusedByEveryFunction) {
  const Handles handles;
  void* freed = nullptr;
  {
    const Handles others;
    freed = others.All().front().second;
  }
  int on_stack = 0;
  for (const Taker& taker : kTakers) {
    EXPECT_EQ(taker.take(nullptr), DISCOPLAN_BAD_HANDLE) << taker.name;
    EXPECT_EQ(taker.take(&on_stack), DISCOPLAN_BAD_HANDLE) << taker.name;
    EXPECT_EQ(taker.take(freed), DISCOPLAN_BAD_HANDLE) << taker.name;
    for (const auto& [kind, handle] : handles.All()) {
      const discoplan_status status = taker.take(handle);
      const bool fits = kind == taker.kind && taker.name != std::string("discoplan_wafer_minus");
      EXPECT_EQ(status != DISCOPLAN_BAD_HANDLE, fits)
          << taker.name << " with the handle of a " << kind << ": " << discoplan_error();
    }
  }
}

// A new function can't be forgotten here.
TEST(CMisuse, EveryFunctionThatTakesAHandleIsAmongThose) {
  std::ifstream file(discoplan::Example("../bindings/c/discoplan.h"));
  const std::string header((std::istreambuf_iterator<char>(file)), {});
  ASSERT_FALSE(header.empty());
  const std::regex function("DISCOPLAN_API\\s+discoplan_status\\s+(discoplan_\\w+)\\(([^;]*)\\);");
  const std::regex handle("^discoplan_(wafer|lot|picture|result|control)\\*( const\\*)? \\w+");
  std::vector<std::string> found;
  for (std::sregex_iterator at(header.begin(), header.end(), function), end; at != end; ++at) {
    const std::string parameters = (*at)[2];
    if (std::regex_search(parameters, handle)) found.push_back((*at)[1]);
  }
  std::vector<std::string> here;
  for (const Taker& taker : kTakers) here.emplace_back(taker.name);
  std::sort(here.begin(), here.end());
  std::sort(found.begin(), found.end());
  EXPECT_EQ(found, here);
}

// Without a handle there is nothing but pointers to get wrong.
TEST(CMisuse, OfPointersIsRefusedByTheOthers) {
  int64_t count = 0;
  discoplan_wafer* wafer = nullptr;
  discoplan_lot* lot = nullptr;
  discoplan_result* result = nullptr;
  discoplan_control* control = nullptr;
  uint8_t rgba[4];
  const discoplan_status refused[] = {
      discoplan_figure_count(nullptr),
      discoplan_figure_describe(0, nullptr),
      discoplan_wafer_new(nullptr, nullptr, &wafer),
      discoplan_wafers_mean(nullptr, 1, &count, &wafer),
      discoplan_wafers_mean(&wafer, -1, &count, &wafer),
      discoplan_read(nullptr, nullptr, &lot),
      discoplan_read("a.csv", nullptr, nullptr),
      discoplan_sheet(nullptr, 1, nullptr, nullptr),
      discoplan_colours(nullptr, 1, rgba),
      discoplan_colours("vik", 1, nullptr),
      discoplan_colours("vik", 0, rgba),
      discoplan_colour_names(nullptr),
      discoplan_batch_run(nullptr, &result),
      discoplan_describe(nullptr),
      discoplan_control_new(nullptr, 100, 100, &control),
      discoplan_control_new("Plot2D", 100, 100, nullptr),
      discoplan_control_new("Plot2D", 0, 100, &control),
  };
  for (std::size_t i = 0; i < std::size(refused); ++i) {
    EXPECT_EQ(refused[i], DISCOPLAN_BAD_ARGUMENT) << i;
  }
  EXPECT_EQ(discoplan_control_new("Plot4D", 100, 100, &control), DISCOPLAN_NO_MEMBER);
  EXPECT_EQ(control, nullptr);
}

TEST(CMisuse, OfStructsAndPointersIsRefused) {
  const Ramp ramp;
  discoplan_sites sites = ramp.Sites();
  discoplan_wafer* wafer = nullptr;
  EXPECT_EQ(discoplan_wafer_new(nullptr, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, nullptr), DISCOPLAN_BAD_ARGUMENT);
  sites.size = 8;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  sites = ramp.Sites();
  sites.x.data = nullptr;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  sites = ramp.Sites();
  sites.y.type = 7;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_ARGUMENT);
  sites = ramp.Sites();
  sites.count = -1;
  EXPECT_NE(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_OK);
  sites.count = 40000;
  EXPECT_EQ(discoplan_wafer_new(&sites, nullptr, &wafer), DISCOPLAN_BAD_DATA);
  const Wafer good(ramp.Sites());
  double number = 0;
  EXPECT_EQ(discoplan_wafer_statistics(good.Get(), &number, 1), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(number, 0);
  discoplan_picture* picture = nullptr;
  discoplan_plot_options options{};
  options.size = sizeof options;
  options.kind = "4D";
  EXPECT_EQ(discoplan_plot(good.Get(), &options, &picture), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_STREQ(discoplan_error(),
               "kind: '4D' is none of 2D, 2DS, 2DC, 2DN, 3D, 3DS, 3DB, histo, linescan");
}

TEST(CMisuse, StructsOfLaterVersionsWillDoIfTheyAskForNothingNew) {
  struct Later {
    discoplan_plot_options known;
    double news;
  } later{};
  later.known.size = sizeof later;
  const Wafer wafer(Ramp().Sites());
  discoplan_picture* picture = nullptr;
  EXPECT_EQ(discoplan_plot(wafer.Get(), &later.known, &picture), DISCOPLAN_OK);
  discoplan_free(picture);
  later.news = 1;
  EXPECT_EQ(discoplan_plot(wafer.Get(), &later.known, &picture), DISCOPLAN_BAD_ARGUMENT);
  EXPECT_EQ(picture, nullptr);
}

TEST(CThreads, ShareWafersAndFreeThemAtAnyTime) {
  const Ramp ramp;
  std::vector<std::thread> threads;
  std::atomic<int> drawn = 0;
  const discoplan_sites sites = ramp.Sites();
  discoplan_wafer* shared = nullptr;
  ASSERT_EQ(discoplan_wafer_new(&sites, nullptr, &shared), DISCOPLAN_OK);
  for (int i = 0; i < 8; ++i) {
    threads.emplace_back([&, i] {
      for (int k = 0; k < 5; ++k) {
        discoplan_picture* picture = nullptr;
        const discoplan_status status = discoplan_plot(shared, nullptr, &picture);
        const uint8_t* bytes = nullptr;
        int64_t count = 0;
        if (status == DISCOPLAN_OK &&
            discoplan_picture_encode(picture, DISCOPLAN_PNG, &bytes, &count) == DISCOPLAN_OK) {
          ++drawn;
        } else {
          EXPECT_EQ(status, DISCOPLAN_BAD_HANDLE);
        }
        discoplan_free(picture);
        if (i == 3 && k == 3) discoplan_free(shared);
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  EXPECT_GE(drawn, 4);
}

}  // namespace
