// The private session the tests run in: a check that there is one, its daemons, its devices, its tools.
#pragma once

#include <chrono>
#include <functional>
#include <string>
#include <vector>

namespace quillmere::test {

/// Polls a condition until it holds or the time is up; the last answer.
bool eventually(const std::function<bool()>& condition, std::chrono::milliseconds within = std::chrono::seconds(5));

/// Runs a program and waits for it; its standard output.
std::string run(const std::vector<std::string>& command);

/// Milliseconds on the monotonic clock.
double nowMillis();

namespace session {

inline const std::string sinkA = "quillmere_test_sink_a";
inline const std::string sinkB = "quillmere_test_sink_b";

[[nodiscard]] bool isPrivate();
/// "stop", "start", "restart" or "kill" for daemons by name, as scripts/private-session has it.
void control(const std::string& verb, const std::vector<std::string>& daemons);
/// The session manager, stopped in the middle of whatever it does until the object goes. Meanwhile nobody new is let
/// in.
class HeldDaemon {
 public:
  explicit HeldDaemon(const std::string& name = "wireplumber");
  ~HeldDaemon();
  HeldDaemon(const HeldDaemon&) = delete;
  HeldDaemon& operator=(const HeldDaemon&) = delete;

 private:
  int pid_;
};
/// Makes a virtual output device; `properties` are more of them as the daemon's JSON has it.
void addSink(const std::string& name, const std::string& properties = {});
void removeSink(const std::string& name);
/// Restarts the session manager with fresh devices, as it is with real cards, which live in it. (0.4.13 never gets over
/// a device or a client's stream that outlives it; clients have to be started again.)
void restartSessionManager();
/// Names of the nodes of ours that stand in the graph.
[[nodiscard]] std::vector<std::string> ourNodes();
/// Those among them that applications are moved to.
[[nodiscard]] std::vector<std::string> ourTaps();
/// The number by which the PulseAudio server knows a stream, by its node.name; empty where there is none.
[[nodiscard]] std::string sinkInputOf(const std::string& stream);
/// Of a node, as the daemon calls it: "running", "idle", "suspended".
[[nodiscard]] std::string stateOf(const std::string& node);
/// Writes the whole graph, as it stands now, among the session's logs; they are kept when a test fails.
void keepGraph();
/// Whether a port of the one node is linked to a port of the other.
[[nodiscard]] bool areLinked(const std::string& output, const std::string& input);

}  // namespace session
}  // namespace quillmere::test
