// Log lines to the journal.
#include "platform/linux/JournalLogSink.h"

#include <sys/stat.h>
#include <sys/uio.h>
#include <syslog.h>
// The journal's own header wants to know the place in the source; our lines carry their category instead.
#define SD_JOURNAL_SUPPRESS_LOCATION
#include <systemd/sd-journal.h>

#include <algorithm>
#include <array>
#include <chrono>

namespace quillmere {
namespace {

bool isSocket(const std::string& path) {
  struct stat facts{};
  return ::stat(path.c_str(), &facts) == 0 && S_ISSOCK(facts.st_mode);
}

int priorityOf(LogLevel level) {
  switch (level) {
    case LogLevel::info:
      return LOG_INFO;
    case LogLevel::standard:
      return LOG_NOTICE;
    case LogLevel::error:
      return LOG_ERR;
  }
  return LOG_NOTICE;
}

}  // namespace

JournalLogSink::JournalLogSink(const std::string& socketPath) : writesToJournal_(isSocket(socketPath)) {}

void JournalLogSink::write(LogLevel level, std::string_view subsystem, std::string_view category,
                           std::string_view message) {
  if (level == LogLevel::info && !repeated_.isNews(category, message, std::chrono::steady_clock::now())) return;
  if (writesToJournal_) {
    const std::array<std::string, 5> fields{
        "MESSAGE=[" + std::string(category) + "] " + std::string(message),
        "PRIORITY=" + std::to_string(priorityOf(level)),
        "SYSLOG_IDENTIFIER=quillmere",
        "QUILLMERE_SUBSYSTEM=" + std::string(subsystem),
        "QUILLMERE_CATEGORY=" + std::string(category),
    };
    std::array<iovec, 5> pieces{};
    std::ranges::transform(fields, pieces.begin(), [](const std::string& field) {
      return iovec{const_cast<char*>(field.data()), field.size()};
    });
    if (sd_journal_sendv(pieces.data(), static_cast<int>(pieces.size())) == 0) return;
  }
  standardError_.write(level, subsystem, category, message);
}

}  // namespace quillmere
