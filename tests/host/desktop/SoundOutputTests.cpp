#include "hosts/desktop/SoundOutput.h"

#include <gtest/gtest.h>

namespace desktop {

namespace {

const SoundOutput earphones{"built-in", Audience::Wearer, 2};
const SoundOutput speaker{"built-in", Audience::Room, 2};
const SoundOutput television{"hdmi", Audience::Room, 2};
const SoundOutput headset{"headset", Audience::Wearer, 2};
const SoundOutput unknown{"somewhere", Audience::Unknown, 2};
const SoundOutput mono{"kitchen", Audience::Room, 1};

bool pauses(const SoundOutput& before, const std::optional<SoundOutput>& after, Passing passing = Passing::Changed) {
  SoundOutputRule rule;
  rule.next(before, Passing::Changed);
  return rule.next(after, passing).pausesFilms;
}

}  // namespace

TEST(SoundOutput, TheFirstOneChangesNothing) {
  for (const auto& output : {earphones, speaker, unknown}) {
    SoundOutputRule rule;
    EXPECT_FALSE(rule.next(output, Passing::Changed).pausesFilms);
  }
}

TEST(SoundOutput, EarphonesPulledOutPauseTheFilms) {
  EXPECT_TRUE(pauses(earphones, speaker));
  EXPECT_TRUE(pauses(headset, speaker));
  EXPECT_TRUE(pauses(headset, unknown));
}

TEST(SoundOutput, WhatSomebodyChoseOrPluggedInDoesNot) {
  EXPECT_FALSE(pauses(speaker, earphones));
  EXPECT_FALSE(pauses(speaker, television));
  EXPECT_FALSE(pauses(earphones, headset));
  EXPECT_FALSE(pauses(speaker, unknown));
}

TEST(SoundOutput, ADeviceThatVanishesPausesTheFilms) {
  EXPECT_TRUE(pauses(unknown, speaker, Passing::Vanished));
  EXPECT_TRUE(pauses(television, speaker, Passing::Vanished));
}

TEST(SoundOutput, ADeviceThatVanishesPausesTheFilmsOnceThereIsAnotherOne) {
  SoundOutputRule rule;
  rule.next(headset, Passing::Changed);
  EXPECT_FALSE(rule.next(std::nullopt, Passing::Vanished).pausesFilms);
  EXPECT_TRUE(rule.next(speaker, Passing::Changed).pausesFilms);
  EXPECT_FALSE(rule.next(television, Passing::Changed).pausesFilms);
}

TEST(SoundOutput, ASoundServerThatStartsAgainPausesNothing) {
  SoundOutputRule rule;
  rule.next(headset, Passing::Changed);
  EXPECT_FALSE(rule.next(std::nullopt, Passing::Lost).pausesFilms);
  EXPECT_FALSE(rule.next(speaker, Passing::Changed).pausesFilms);
}

TEST(SoundOutput, OneChannelIsToldOnce) {
  SoundOutputRule rule;
  EXPECT_FALSE(rule.next(speaker, Passing::Changed).tellsThatItIsMono);
  EXPECT_TRUE(rule.next(mono, Passing::Changed).tellsThatItIsMono);
  EXPECT_FALSE(rule.next(mono, Passing::Changed).tellsThatItIsMono);
  EXPECT_FALSE(rule.next(speaker, Passing::Changed).tellsThatItIsMono);
  EXPECT_TRUE(rule.next(mono, Passing::Changed).tellsThatItIsMono);
}

}  // namespace desktop
