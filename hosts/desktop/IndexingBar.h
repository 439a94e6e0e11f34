#pragma once

#include "hosts/desktop/GuardedLibrary.h"
#include "hosts/desktop/Layer.h"

#include <QObject>
#include <QTimer>

namespace desktop {

/// Tells over the main screen, without being in the way, how far the media library is while it looks into many files,
/// as it does at first. Main thread.
///
/// Work that is small or about to end is not told of. What is told of stays until it is done, or until the person
/// hides it, which holds for this run of the program.
class IndexingBar final : public QObject {
  Q_OBJECT
  Q_PROPERTY(double fraction READ fraction NOTIFY changed)
  Q_PROPERTY(QString text READ text NOTIFY changed)

 public:
  /// Both outlive the bar.
  IndexingBar(Layers& layers, GuardedLibrary& library);

  bool isShown() const { return layer_.isShown(); }
  /// Nothing is shown while something else tells the same.
  void setHeldBack(bool isHeldBack);

  // For the layer.
  /// From 0 to 1.
  double fraction() const;
  /// "120 of 4,000, about 2 minutes left"
  QString text() const;
  /// Ends the layer.
  Q_INVOKABLE void hide();

 signals:
  void changed();

 private:
  void update();
  /// Whether the work is worth telling of.
  bool isLong() const;

  GuardedLibrary& library_;
  medialibrary::FolderLibrary::Progress progress_;
  QTimer judgement_;  ///< runs once from the beginning of each piece of work
  bool isTold_ = false;
  bool isHidden_ = false;
  bool isHeldBack_ = false;
  Layer layer_;
};

}  // namespace desktop
