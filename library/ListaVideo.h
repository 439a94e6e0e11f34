#pragma once

#include "library/passoVideo.h"
#include "platform/mediaplayer/MPMediaItem.h"
#include "platform/uikit/UITableView.h"
#include "platform/uikit/UIViewController.h"

#include <vector>

/// The list of the library's home videos, in two tables, one per film. The table in which a video is chosen decides
/// the film that receives it; the delegate hears of the choice once the list has gone.
class ListaVideo final : public UIViewController, public UITableViewDataSource, public UITableViewDelegate {
 public:
  explicit ListaVideo(const std::optional<std::string>& nibName = std::nullopt, NSBundle* bundle = nullptr)
      : UIViewController(nibName, bundle) {}
  explicit ListaVideo(const NSCoder& coder) : UIViewController(coder) {}

  Strong<::passoVideo> delegate;
  Strong<UITableView> tabella1;
  Strong<UITableView> tabella2;
  std::vector<Strong<MPMediaItem>> arrayFilm;

  void viewDidLoad() override;
  void viewWillLayoutSubviews() override;
  void viewDidAppear(bool animated) override;

  long tableView_numberOfRowsInSection(const Strong<UITableView>& tableView, long section) override;
  Strong<UITableViewCell> tableView_cellForRowAtIndexPath(const Strong<UITableView>& tableView,
                                                          NSIndexPath indexPath) override;
  void tableView_didSelectRowAtIndexPath(const Strong<UITableView>& tableView, NSIndexPath indexPath) override;

  /// The close button: the list goes, and neither film changes.
  void chiudi(const Strong<UIControl>& sender);

  InterfaceTable interfaceTable() override;

 private:
  void caricaLista();
  void mostraLibreriaVuota();
  void riempi(UITableViewCell& cell, long row) const;
  const Strong<MPMediaItem>& film(long row) const;
};
