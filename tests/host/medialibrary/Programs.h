#pragma once

/// The programs of this build that tests start: their files.
namespace programs {

const char* indexer();
/// Says what the indexer may say, and worse.
const char* standInIndexer();
/// A library in a process of its own.
const char* library();

}  // namespace programs
