#pragma once

#include <gtest/gtest.h>

#include <unistd.h>

/// For as long as this lives, the program has the rights of an ordinary user, also where root runs the tests.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    if (wasRoot_ && seteuid(nobody) != 0) ADD_FAILURE() << "could not become an ordinary user";
  }
  ~OrdinaryUser() {
    if (wasRoot_ && seteuid(0) != 0) ADD_FAILURE() << "could not become root again";
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;

 private:
  static constexpr uid_t nobody = 65534;
  const bool wasRoot_ = geteuid() == 0;
};
