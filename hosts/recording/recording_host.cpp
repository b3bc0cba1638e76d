// SPDX-License-Identifier: MIT
#include "hosts/recording/recording_host.h"

#include <algorithm>

#include "discoplan/base/algorithms.h"
#include "discoplan/base/numbers.h"

namespace discoplan {
namespace {

bool BeginsCharacter(char byte) { return (static_cast<unsigned char>(byte) & 0xC0) != 0x80; }

}  // namespace

double FixedText::Width(const Font&, double, std::string_view text) const {
  return static_cast<double>(CountIf(text, BeginsCharacter)) * kCharacterWidth;
}

Paper::Paper(const Screen& screen, const Screen& resolution, float width, float height)
    : screen_(screen), resolution_(resolution) {
  state_.scale_mode = kTwips;
  state_.width = width;
  state_.height = height;
  TakeScale();
}

void Paper::Cls() { numbers_detail::Raise(Fault::MemberNotOffered); }

void Paper::Refresh() { numbers_detail::Raise(Fault::MemberNotOffered); }

void Paper::TakeScale() {
  const bool twips = state_.scale_mode == kTwips;
  state_.scale_width = state_.width / (twips ? 1 : resolution_.twips_per_pixel_x);
  state_.scale_height = state_.height / (twips ? 1 : resolution_.twips_per_pixel_y);
}

void Paper::StateWritten(SurfaceState which) {
  if (which == SurfaceState::ScaleMode || which == SurfaceState::Width ||
      which == SurfaceState::Height) {
    TakeScale();
  }
}

float Paper::TextWidth(std::string_view text) const {
  const double pixels = FixedText().Width(state_.font, 1, text);
  return static_cast<float>(pixels *
                            (state_.scale_mode == kTwips ? resolution_.twips_per_pixel_x : 1));
}

float Paper::TextHeight(std::string_view) const {
  return FixedText::kLineHeight * (state_.scale_mode == kTwips ? resolution_.twips_per_pixel_y : 1);
}

std::unique_ptr<Picture> RecordingHost::NewPicture(float width, float height) {
  return std::make_unique<Recording<Picture>>(
      Picture::Setting{.screen = screen_, .resolution = screen_, .text = text_}, width, height);
}

void RecordingHost::ShowModal(const std::shared_ptr<Form>& form,
                              const std::function<void()>& done) {
  form->Show();
  try {
    if (user_) user_(*form);
  } catch (...) {
    form->Cancel();
    throw;
  }
  if (form->root().Visible()) form->Cancel();
  if (done) done();
}

}  // namespace discoplan
