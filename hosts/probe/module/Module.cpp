#include "hosts/probe/module/Module.h"

#include "hosts/probe/MediaProbe.h"

extern "C" [[gnu::visibility("default")]] probe::ModuleLook quillopLook;

void quillopLook(const std::string& path, double deadlineSeconds, host::MediaFacts& facts) {
  facts = probe::look(path, deadlineSeconds).media;
}
