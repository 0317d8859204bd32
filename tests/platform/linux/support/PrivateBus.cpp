// Starting and ending a dbus-daemon.
#include "PrivateBus.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <csignal>

namespace quillmere::support {
namespace {

bool listens(const std::string& path) {
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  path.copy(address.sun_path, sizeof(address.sun_path) - 1);
  const int socket = ::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  const bool isOpen = ::connect(socket, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) == 0;
  ::close(socket);
  return isOpen;
}

}  // namespace

PrivateBus::PrivateBus() {
  address_ = "unix:path=" + folder_.path("bus");
  folder_.write("bus.conf",
                "<!DOCTYPE busconfig PUBLIC \"-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN\" "
                "\"http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd\">\n"
                "<busconfig><type>session</type><listen>" +
                    address_ +
                    "</listen><policy context=\"default\"><allow send_destination=\"*\" eavesdrop=\"true\"/>"
                    "<allow eavesdrop=\"true\"/><allow own=\"*\"/></policy></busconfig>\n");
  start();
}

PrivateBus::~PrivateBus() { stop(); }

void PrivateBus::start() {
  std::filesystem::remove(folder_.path("bus"));
  const auto configuration = "--config-file=" + folder_.path("bus.conf");
  pid_ = ::fork();
  if (pid_ == 0) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    const int log = ::open(folder_.path("log").c_str(), O_WRONLY | O_CREAT | O_APPEND | O_CLOEXEC, 0600);
    ::dup2(log, STDERR_FILENO);
    ::execlp("dbus-daemon", "dbus-daemon", configuration.c_str(), "--nofork", "--nopidfile", nullptr);
    ::_exit(127);
  }
  const auto deadline = std::chrono::steady_clock::now() + std::chrono::seconds(20);
  while (!listens(folder_.path("bus"))) {
    ASSERT_LT(std::chrono::steady_clock::now(), deadline) << "the bus did not come up";
    ::usleep(2000);
  }
}

void PrivateBus::stop() {
  if (pid_ <= 0) return;
  ::kill(pid_, SIGKILL);
  ::waitpid(pid_, nullptr, 0);
  pid_ = 0;
}

}  // namespace quillmere::support
