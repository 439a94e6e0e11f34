#include "hosts/medialibrary/indexer/FileLook.h"
#include "hosts/medialibrary/indexer/IndexerMain.h"

int main(int argc, char** argv) {
  return medialibrary::indexerMain({argv, static_cast<std::size_t>(argc)}, medialibrary::lookInto);
}
