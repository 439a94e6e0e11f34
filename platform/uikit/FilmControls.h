#pragma once

#include "platform/uikit/UIButton.h"
#include "platform/uikit/UISlider.h"

/// The views and controls that belong to one film, as the interface resource groups them. It lets a host name a
/// button after its state, show elapsed time, or press the right control, without any code in the app.
struct FilmControls {
  long number = 0;
  Strong<UIView> view;
  Strong<UIView> overlay;
  Strong<UIButton> playPause;
  Strong<UIButton> close;
  Strong<UISlider> position;
  Strong<UISlider> volume;
};
