#include "app/AppDelegate.h"
#include "platform/foundation/ClassRegistry.h"

int main(int argc, char* argv[]) {
  return UIApplicationMain(argc, argv, nullptr, NSStringFromClass<AppDelegate>());
}
