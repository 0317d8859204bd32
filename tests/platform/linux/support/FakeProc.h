// A stand-in for /proc with as many processes as a test needs.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "TemporaryFolder.h"

namespace quillmere::support {

class FakeProc {
 public:
  struct Process {
    std::string executable;
    std::vector<std::string> words;
    std::string unit;
    std::string flatpakID;
  };

  void start(std::int32_t pid, const Process& process) {
    const auto folder = std::to_string(pid) + "/";
    folder_.remove(std::to_string(pid));
    folder_.link(folder + "exe", process.executable);
    std::string commandLine;
    for (const auto& word : process.words) commandLine += word + std::string(1, '\0');
    folder_.write(folder + "cmdline", commandLine);
    const auto slash = process.executable.rfind('/');
    folder_.write(folder + "comm", process.executable.substr(slash + 1).substr(0, 15) + "\n");
    folder_.write(folder + "cgroup", "0::/user.slice/app.slice/" + process.unit + "\n");
    if (!process.flatpakID.empty()) {
      folder_.write(folder + "root/.flatpak-info",
                    "[Application]\nname=" + process.flatpakID + "\n\n[Instance]\nname=x\n");
    }
  }
  void start(std::int32_t pid, const std::string& executable, const std::string& unit = "session-1.scope") {
    start(pid, Process{executable, {executable}, unit, {}});
  }
  /// The same process becomes another program.
  void replace(std::int32_t pid, const std::string& executable) {
    folder_.remove(std::to_string(pid) + "/exe");
    folder_.link(std::to_string(pid) + "/exe", executable);
    folder_.write(std::to_string(pid) + "/cmdline", executable + std::string(1, '\0'));
  }
  /// What the kernel says of all threads, and the number that it gave last.
  void tell(int threads, std::int32_t lastNumber) {
    folder_.write("loadavg", "0.20 0.18 0.12 1/" + std::to_string(threads) + " " + std::to_string(lastNumber) + "\n");
  }
  void end(std::int32_t pid) { folder_.remove(std::to_string(pid)); }
  /// Only the folder: what is left of a process for a moment while it goes.
  void vanishWhileRead(std::int32_t pid) { folder_.write(std::to_string(pid) + "/stat", ""); }

  [[nodiscard]] std::string path() const { return folder_.path(); }

 private:
  TemporaryFolder folder_;
};

}  // namespace quillmere::support
