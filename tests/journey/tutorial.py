"""What the console says of the tutorial."""

OPENS = ["initWithViews : [<UIImage: 1tutorial.jpg>, <UIImage: 2tutorial.jpg>]", "_pgcontrol : 26.0"]
LEAVES_FOR = "viewWillDisappear metto in pausa i due player"
TURNS = ["ButtonPushed", "numero : 1   page : 0", "if page_ != numero"]
CLOSES = ["ButtonPushed", "numero : 1   page : 1", "self.dismissViewControllerAnimated"]
