#include "platform/uikit/UIImage.h"

#include "platform/Platform.h"

Strong<UIImage> UIImage::imageNamed(const std::string& name) {
  const auto picture = Platform::current().ports().resources.picture(name);
  if (!picture) return nullptr;
  return make<UIImage>(picture->source, CGSize{picture->width, picture->height}, name, picture->description);
}
