#include "tests/host/medialibrary/Programs.h"

namespace programs {

const char* indexer() {
  return QUILLOP_INDEXER;
}

const char* standInIndexer() {
  return QUILLOP_STAND_IN_INDEXER;
}

const char* library() {
  return QUILLOP_LIBRARY_PROGRAM;
}

}  // namespace programs
