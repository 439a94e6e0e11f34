#pragma once

#include "platform/coreanimation/CALayer.h"

#include <QObject>
#include <QQuickItem>
#include <QString>

#include <memory>

namespace qtquick {

class Mirror;

/// One item on the screen and what it stands for: a view, a layer of its own, a screen. State flows through it one
/// way, from the platform's object to the item; what a person does goes the other way at once, in a turn.
///
/// QML reads the platform's object through the node's properties, which keep nothing themselves; `changed` makes it
/// read them again. The platform's object may be gone already while its item still is there until the next pass;
/// then the properties have no value and nothing can be done to it.
class Node : public QObject {
  Q_OBJECT

 public:
  ~Node() override;

  QQuickItem& item() const { return *item_; }
  /// Brings the item up to date.
  virtual void update() = 0;

 signals:
  void changed();

 protected:
  explicit Node(Mirror& mirror) : mirror_(mirror) {}

  Mirror& mirror() const { return mirror_; }
  /// Makes the item from the component of that name, with this node as its property `node`, as the topmost one in
  /// `parent`. To be called once, by the most derived class's maker.
  void makeItem(const QString& component, QQuickItem& parent, CGRect frame);
  /// For a class whose own members the item refers to: before they go.
  void dropItem() { item_ = nullptr; }
  void place(CGRect frame);

 private:
  Mirror& mirror_;
  std::unique_ptr<QQuickItem> item_;
};

}  // namespace qtquick
