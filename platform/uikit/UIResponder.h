#pragma once

#include "platform/foundation/NSObject.h"

/// The base of everything that can receive events.
class UIResponder : public NSObject {};
