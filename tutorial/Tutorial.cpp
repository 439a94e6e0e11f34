#include "tutorial/Tutorial.h"

#include "platform/foundation/Required.h"

Strong<NFXIntroViewController> makeTutorial() {
  std::vector<Strong<NSObject>> pictures;
  for (const auto* name : {"1tutorial.jpg", "2tutorial.jpg"}) {
    const auto picture = UIImage::imageNamed(name);
    required(picture, name);
    pictures.push_back(picture);
  }
  auto pager = make<NFXIntroViewController>(std::nullopt, nullptr);
  pager->initWithViews(pictures);
  return pager;
}
