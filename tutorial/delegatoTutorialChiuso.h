#pragma once

/// Whoever wants to hear that the tutorial was closed.
class delegatoTutorialChiuso {
 public:
  virtual ~delegatoTutorialChiuso() = default;
  virtual void chiusoTutorial() = 0;
};
