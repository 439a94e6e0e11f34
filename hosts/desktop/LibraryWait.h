#pragma once

#include "hosts/desktop/GuardedLibrary.h"
#include "hosts/desktop/Layer.h"

#include <QObject>
#include <QTimer>

#include <functional>
#include <vector>

namespace desktop {

/// Lets the person wait for a media library that does not know all of its files yet. Main thread.
///
/// Where something can be listed already the wait is short: what is not known by then appears in the next list. Where
/// there is nothing, it takes as long as the library takes, and the person may go on with what was found meanwhile.
/// A wait that can be noticed shows how far the library is.
class LibraryWait final : public QObject {
  Q_OBJECT
  Q_PROPERTY(double fraction READ fraction NOTIFY changed)
  Q_PROPERTY(QString count READ count NOTIFY changed)
  Q_PROPERTY(QString remaining READ remaining NOTIFY changed)
  Q_PROPERTY(QString found READ found NOTIFY changed)

 public:
  using Answered = std::function<void(bool isReady)>;

  /// `layers` outlives the wait.
  explicit LibraryWait(Layers& layers);

  /// Calls `answered` once: with true when `library`, which is there until then, is to be listed, with false when the
  /// person cancelled; never when the wait is destroyed before. It may be called from within this call.
  /// While a wait goes on already, `answered` shares its end.
  void begin(GuardedLibrary& library, Answered answered);
  /// From `begin` to the answer, also while nothing is shown yet.
  bool isWaiting() const { return !answered_.empty(); }
  bool isShown() const { return layer_.isShown(); }

  // For the layer.
  /// From 0 to 1.
  double fraction() const;
  /// "120 of 4,000"; while nobody knows how many there are, what is being done instead.
  QString count() const;
  /// "about 2 minutes left"; empty while that cannot be told.
  QString remaining() const;
  /// "37 videos"; empty while there is none.
  QString found() const;
  // They end the layer.
  Q_INVOKABLE void cancel() { endLater(false); }
  Q_INVOKABLE void goOn() { endLater(true); }

 signals:
  void changed();
  /// A wait has begun or ended.
  void waitingChanged();

 private:
  void update();
  void show();
  void endLater(bool isReady);
  void end(bool isReady);

  GuardedLibrary* library_ = nullptr;  ///< while it is waited for
  std::vector<Answered> answered_;
  medialibrary::FolderLibrary::Contents contents_;
  medialibrary::FolderLibrary::Progress progress_;
  QTimer untilNoticed_;
  QTimer patience_;
  Layer layer_;
};

}  // namespace desktop
