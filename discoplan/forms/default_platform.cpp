// SPDX-License-Identifier: MIT
// What a platform does unless it does better.

#include "discoplan/forms/form.h"
#include "discoplan/raster/picture.h"

namespace discoplan {

std::unique_ptr<Picture> Platform::NewPicture(float width, float height) {
  return std::make_unique<Picture>(
      Picture::Setting{.screen = screen(), .resolution = screen(), .text = text()}, width, height);
}

float Platform::LabelWidth(const Font& font, std::string_view text_on_label) const {
  const double pixels =
      text().Width(font, kTwipsPerPoint / screen().twips_per_pixel_y, text_on_label);
  return static_cast<float>(pixels * screen().twips_per_pixel_x);
}

void Platform::ShowModal(const std::shared_ptr<Form>& form, const std::function<void()>& done) {
  form->Cancel();
  if (done) done();
}

}  // namespace discoplan
