#pragma once

#include "platform/coregraphics/CGGeometry.h"
#include "platform/uikit/UIColor.h"
#include "platform/uikit/UIImage.h"

#include <optional>

/// A picture being drawn by code. Only whole-area fills are kept: a picture drawn here is of one colour, or empty.
struct CGContext {
  CGSize size;
  UIColor fillColor = UIColor::blackColor();
  std::optional<UIColor> filled;
};
using CGContextRef = CGContext*;

/// Starts a picture of `size` points; contexts nest. Main thread.
void UIGraphicsBeginImageContext(CGSize size);
/// The innermost picture being drawn, or null.
CGContextRef UIGraphicsGetCurrentContext();
/// Fills with the context's fill colour. A rectangle that does not cover the whole picture draws nothing.
void CGContextFillRect(CGContextRef context, CGRect rect);
/// What was drawn so far as a picture whose source is "color:#RRGGBBAA"; none without a context or when it is empty.
Strong<UIImage> UIGraphicsGetImageFromCurrentImageContext();
void UIGraphicsEndImageContext();
