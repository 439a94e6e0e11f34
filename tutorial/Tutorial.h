#pragma once

#include "tutorial/NFXIntroViewController.h"

/// The app's tutorial, ready to be presented full screen: a pager with the two pictures. Stops the app when one of
/// them is missing.
Strong<NFXIntroViewController> makeTutorial();
