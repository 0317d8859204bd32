#include "support/Session.h"

#include <pipewire/pipewire.h>
#include <signal.h>
#include <sys/socket.h>
#include <sys/un.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <iterator>
#include <sstream>
#include <stdexcept>
#include <thread>

namespace quillmere::test {
namespace {

/// Finds every node of a name, and removes them if told to.
struct NodeVisit {
  std::string name;
  bool isRemoving = false;
  pw_main_loop* loop = nullptr;
  pw_registry* registry = nullptr;
  int sequence = 0;
  int count = 0;

  static void onGlobal(void* data, std::uint32_t id, std::uint32_t, const char* type, std::uint32_t,
                       const spa_dict* properties) {
    auto& self = *static_cast<NodeVisit*>(data);
    const char* found = properties != nullptr ? spa_dict_lookup(properties, PW_KEY_NODE_NAME) : nullptr;
    if (std::string_view(type) != PW_TYPE_INTERFACE_Node || found == nullptr || self.name != found) return;
    ++self.count;
    if (self.isRemoving) pw_registry_destroy(self.registry, id);
  }
  static void onDone(void* data, std::uint32_t, int sequence) {
    auto& self = *static_cast<NodeVisit*>(data);
    if (sequence == self.sequence) pw_main_loop_quit(self.loop);
  }
};

/// How many there are. The tools of the daemon may end before they have been told of everything; this waits.
int visitNodes(const std::string& name, bool isRemoving) {
  pw_init(nullptr, nullptr);
  NodeVisit visit;
  visit.name = name;
  visit.isRemoving = isRemoving;
  visit.loop = pw_main_loop_new(nullptr);
  auto* context = pw_context_new(pw_main_loop_get_loop(visit.loop), nullptr, 0);
  auto* core = pw_context_connect(context, nullptr, 0);
  if (core == nullptr) throw std::runtime_error("no daemon to ask for " + name);
  visit.registry = pw_core_get_registry(core, PW_VERSION_REGISTRY, 0);
  spa_hook registryListener{};
  spa_hook coreListener{};
  pw_registry_events registryEvents{};
  registryEvents.version = PW_VERSION_REGISTRY_EVENTS;
  registryEvents.global = &NodeVisit::onGlobal;
  pw_core_events coreEvents{};
  coreEvents.version = PW_VERSION_CORE_EVENTS;
  coreEvents.done = &NodeVisit::onDone;
  pw_registry_add_listener(visit.registry, &registryListener, &registryEvents, &visit);
  pw_core_add_listener(core, &coreListener, &coreEvents, &visit);
  // Once all globals are known, and once more when what was asked has been carried out.
  for (int round = 0; round < 2; ++round) {
    visit.sequence = pw_core_sync(core, PW_ID_CORE, 0);
    pw_main_loop_run(visit.loop);
  }
  spa_hook_remove(&registryListener);
  spa_hook_remove(&coreListener);
  pw_proxy_destroy(reinterpret_cast<pw_proxy*>(visit.registry));
  pw_core_disconnect(core);
  pw_context_destroy(context);
  pw_main_loop_destroy(visit.loop);
  return visit.count;
}

}  // namespace

double nowMillis() {
  return std::chrono::duration<double, std::milli>(std::chrono::steady_clock::now().time_since_epoch()).count();
}

bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds within) {
  const auto deadline = std::chrono::steady_clock::now() + within;
  while (!condition()) {
    if (std::chrono::steady_clock::now() >= deadline) return condition();
    std::this_thread::sleep_for(std::chrono::milliseconds(2));
  }
  return true;
}

std::string run(const std::vector<std::string>& command) {
  std::array<int, 2> channel{};
  if (pipe(channel.data()) != 0) throw std::runtime_error("no pipe");
  const pid_t child = fork();
  if (child == 0) {
    dup2(channel[1], STDOUT_FILENO);
    close(channel[0]);
    close(channel[1]);
    std::vector<char*> arguments;
    for (const auto& word : command) arguments.push_back(const_cast<char*>(word.c_str()));
    arguments.push_back(nullptr);
    execvp(arguments[0], arguments.data());
    _exit(127);
  }
  close(channel[1]);
  std::string output;
  std::array<char, 4096> text{};
  for (ssize_t got = 0; (got = read(channel[0], text.data(), text.size())) > 0;) {
    output.append(text.data(), static_cast<std::size_t>(got));
  }
  close(channel[0]);
  waitpid(child, nullptr, 0);
  return output;
}

namespace session {

bool isPrivate() {
  const char* told = std::getenv("QUILLMERE_PRIVATE_SESSION");
  return told != nullptr && std::string(told) == "1";
}

void control(const std::string& verb, const std::vector<std::string>& daemons) {
  const char* path = std::getenv("QUILLMERE_SESSION_CONTROL");
  if (path == nullptr) throw std::runtime_error("the session has no control socket");
  sockaddr_un address{};
  address.sun_family = AF_UNIX;
  std::strncpy(address.sun_path, path, sizeof(address.sun_path) - 1);
  const int connection = socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0);
  if (connect(connection, reinterpret_cast<const sockaddr*>(&address), sizeof(address)) != 0) {
    close(connection);
    throw std::runtime_error("the session's control socket does not answer");
  }
  std::string line = verb;
  for (const auto& daemon : daemons) line += " " + daemon;
  line += "\n";
  std::string answer;
  if (write(connection, line.data(), line.size()) == static_cast<ssize_t>(line.size())) {
    std::array<char, 256> text{};
    for (ssize_t got = 0; (got = read(connection, text.data(), text.size())) > 0;) {
      answer.append(text.data(), static_cast<std::size_t>(got));
    }
  }
  close(connection);
  if (answer != "done\n") throw std::runtime_error("session: " + verb + ": " + answer);
}

HeldDaemon::HeldDaemon(const std::string& name) {
  std::ifstream file(std::string(std::getenv("QUILLMERE_SESSION_DIR")) + "/daemons.json");
  const std::string table{std::istreambuf_iterator<char>(file), {}};
  const auto place = table.find('"' + name + "\": ");
  if (place == std::string::npos) throw std::runtime_error("no daemon " + name);
  pid_ = std::stoi(table.substr(place + name.size() + 4));
  ::kill(pid_, SIGSTOP);
}
HeldDaemon::~HeldDaemon() { ::kill(pid_, SIGCONT); }

void addSink(const std::string& name, const std::string& properties) {
  const int before = visitNodes(name, false);
  std::string escaped;
  for (const char c : name) {
    if (c == '"' || c == '\\') escaped += '\\';
    escaped += c;
  }
  // A client that comes while there is no session manager sees nothing and can make nothing.
  const bool isThere = eventually([&] {
    run({"pw-cli", "create-node", "adapter",
         "{ factory.name=support.null-audio-sink node.name=\"" + escaped +
             "\" media.class=Audio/Sink object.linger=true audio.position=[FL FR] monitor.channel-volumes=true " +
             properties + " }"});
    return eventually([&] { return visitNodes(name, false) > before; }, std::chrono::milliseconds(500));
  });
  if (!isThere) throw std::runtime_error("the device " + name + " can't be made");
}

void removeSink(const std::string& name) {
  if (visitNodes(name, true) == 0) throw std::runtime_error("no device " + name + " to remove");
}

void restartSessionManager() {
  removeSink(sinkA);
  removeSink(sinkB);
  control("stop", {"wireplumber"});
  // The start waits for devices, and devices wait for the session manager.
  std::thread start([] { control("start", {"wireplumber"}); });
  addSink(sinkA, "node.description=\"Desk Speakers\" priority.session=1000 priority.driver=1000");
  addSink(sinkB, "node.description=\"Travel Headphones\" priority.session=990 priority.driver=990");
  start.join();
}

std::vector<std::string> ourNodes() {
  std::vector<std::string> names;
  std::istringstream listing(run({"pw-cli", "ls", "Node"}));
  for (std::string line; std::getline(listing, line);) {
    const auto begin = line.find("\"app.quillmere.");
    if (begin != std::string::npos) names.push_back(line.substr(begin + 1, line.rfind('"') - begin - 1));
  }
  return names;
}

std::vector<std::string> ourTaps() {
  auto names = ourNodes();
  std::erase_if(names, [](const std::string& name) { return name.find(".tap-") == std::string::npos; });
  return names;
}

std::string sinkInputOf(const std::string& stream) {
  std::istringstream listing(run({"pactl", "list", "sink-inputs"}));
  std::string index;
  for (std::string line; std::getline(listing, line);) {
    if (const auto mark = line.find("Sink Input #"); mark != std::string::npos) index = line.substr(mark + 12);
    if (line.find("node.name = \"" + stream + "\"") != std::string::npos) return index;
  }
  return {};
}

std::string stateOf(const std::string& node) {
  const auto info = run({"pw-cli", "info", node});
  const std::string key = "state: \"";
  const auto begin = info.find(key);
  if (begin == std::string::npos) return {};
  return info.substr(begin + key.size(), info.find('"', begin + key.size()) - begin - key.size());
}

void keepGraph() { run({"sh", "-c", "exec pw-dump > \"$QUILLMERE_SESSION_DIR/logs/graph-$$.log\""}); }

bool areLinked(const std::string& output, const std::string& input) {
  std::istringstream listing(run({"pw-link", "-l"}));
  std::string source;
  for (std::string line; std::getline(listing, line);) {
    if (!line.starts_with(' ')) source = line;
    if (source.starts_with(output + ":") && line.starts_with("  |-> " + input + ":")) return true;
  }
  return false;
}

}  // namespace session
}  // namespace quillmere::test
