// What browsers start to speak with the mixer: quillmere-tabs, which is given the companion's origin and needs nothing.
// Its input and output are the browser's; it ends when they do.
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <string>

#include "core/Product.h"
#include "platform/linux/LinuxTabHost.h"
#include "runtime/Clocks.h"
#include "runtime/Logger.h"

int main() {
  using namespace quillmere;
  // A browser that has gone is noticed by the failed write.
  std::signal(SIGPIPE, SIG_IGN);
  SystemClocks clocks;
  StandardErrorLogSink log;
  LinuxTabHostOptions options;
  options.runtimeFolder = tabHostRuntimeFolder();
  options.version = appVersion();
  return runTabHost(options, clocks, log);
}
