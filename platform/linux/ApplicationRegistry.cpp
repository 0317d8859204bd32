// The picture of what runs, kept by looks at /proc.
#include "platform/linux/ApplicationRegistry.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <map>
#include <mutex>
#include <set>
#include <utility>

#include "applications/ApplicationMatch.h"
#include "applications/DesktopEntries.h"
#include "applications/Identities.h"
#include "applications/ProcessReader.h"

namespace quillmere {

using applications::DesktopEntries;
using applications::Identities;
using applications::ProcessReader;

namespace {

constexpr Duration lookPeriod = std::chrono::seconds(1);
/// In a container another container's comings may hide a going of ours from the sign.
constexpr Duration longestTrust = std::chrono::seconds(10);
constexpr Duration folderPeriod = std::chrono::seconds(5);
constexpr Duration firstCheck = std::chrono::seconds(1);
constexpr Duration lastCheck = std::chrono::seconds(64);

std::string searchPathOfUser() {
  const char* path = std::getenv("PATH");
  return path == nullptr || *path == '\0' ? "/usr/local/bin:/usr/bin:/bin" : path;
}

}  // namespace

class ApplicationRegistry::Core : public std::enable_shared_from_this<Core> {
 public:
  Core(const Runtime& runtime, ApplicationRegistryOptions options)
      : main_(runtime.main),
        background_(runtime.background),
        clocks_(runtime.clocks),
        log_(runtime.log, "ApplicationRegistry"),
        places_{options.dataFolders.empty() ? applications::dataFolders() : std::move(options.dataFolders),
                options.searchPath.empty() ? searchPathOfUser() : std::move(options.searchPath),
                options.desktops ? std::move(*options.desktops) : applications::currentDesktops()},
        reader_(std::move(options.procRoot), options.userID.value_or(::getuid())) {
    // Before the first look every question makes one.
    changes_.setStaleAt(MonotonicTime::min());
  }

  void lookInBackground() {
    if (lookIsPosted_.exchange(true)) return;
    background_.post([weak = weak_from_this()] {
      const auto self = weak.lock();
      if (!self) return;
      self->lookIsPosted_ = false;
      self->look();
    });
  }

  /// Brings the picture up to date, here or in the background, if it is older than a second.
  void refresh() {
    const auto now = clocks_.monotonicNow();
    {
      const std::lock_guard lock(mutex_);
      if (lookedAt_ && now - *lookedAt_ < lookPeriod) return;
    }
    if (main_.isCurrent()) {
      lookInBackground();
    } else {
      look();
    }
  }

  std::string identify(const ClientFacts& facts) {
    const auto entries = currentEntries();
    const auto process = reader_.read(facts.pid);
    return applications::identifyClient(facts, process ? &*process : nullptr, *entries, identities_);
  }

  std::vector<KnownApplication> runningApplications() {
    refresh();
    const std::lock_guard lock(mutex_);
    return running_;
  }

  std::uint64_t pictureNumber() {
    refresh();
    const std::lock_guard lock(mutex_);
    return pictureNumber_;
  }

  [[nodiscard]] const ChangeSignal& changes() const { return changes_; }

  std::optional<KnownApplication> application(const std::string& identifier) {
    refresh();
    const std::lock_guard lock(mutex_);
    for (const auto& application : running_) {
      if (application.identifier == identifier) return application;
    }
    const auto installed = installed_.find(identifier);
    if (installed == installed_.end()) return std::nullopt;
    return installed->second;
  }

  std::vector<KnownApplication> listedApplications() {
    const auto entries = currentEntries(Freshness::files);
    tellChanges();
    std::vector<KnownApplication> listed;
    for (const auto& entry : entries->all()) {
      if (entry.isListed) listed.push_back(applicationOf(entry));
    }
    return listed;
  }

  std::optional<KnownApplication> applicationAt(const std::string& path) const {
    const auto entry = DesktopEntries::readFile(places_, path);
    if (!entry) return std::nullopt;
    return applicationOf(*entry);
  }

  void onChanged(std::function<void()> callback) {
    const std::lock_guard lock(mutex_);
    changed_ = callback ? std::make_shared<std::function<void()>>(std::move(callback)) : nullptr;
    toldNumber_ = pictureNumber_;
  }

  std::int32_t representativePID(std::int32_t pid, const std::string& desktopEntry) {
    refresh();
    const auto entries = currentEntries();
    std::string identifier;
    if (const auto process = reader_.read(pid)) {
      identifier = applications::matchProcess(*process, *entries, identities_).identifier;
    }
    if (identifier.empty()) {
      if (const auto* entry = entries->byID(desktopEntry)) identifier = applications::identifierOf(*entry, identities_);
    }
    if (identifier.empty()) return pid;
    const std::lock_guard lock(mutex_);
    for (const auto& application : running_) {
      if (application.identifier == identifier) return application.pid;
    }
    return pid;
  }

 private:
  struct Record {
    std::uint64_t inode = 0;
    std::string executable;
    std::string identifier;
    std::string entryID;
    std::uint64_t order = 0;
    MonotonicTime nextCheck{};
    Duration interval = firstCheck;
  };
  using FolderTimes = std::vector<std::pair<std::int64_t, std::int64_t>>;

  bool hasLooked() {
    const std::lock_guard lock(mutex_);
    return lookedAt_.has_value();
  }

  void look() {
    // While somebody else looks, the last picture will do; before there is one, nobody goes away with empty hands.
    std::unique_lock looking(lookMutex_, std::defer_lock);
    if (!hasLooked()) {
      looking.lock();
    } else if (!looking.try_lock()) {
      return;
    }
    const auto now = clocks_.monotonicNow();
    {
      const std::lock_guard lock(mutex_);
      if (lookedAt_ && now - *lookedAt_ < lookPeriod) return;
    }
    const auto entries = currentEntries();
    // Before the list is read: what happens meanwhile is for the next look.
    auto sign = reader_.sign();
    const bool isOfOtherEntries = entries != recordedEntries_;
    bool isNew = isOfOtherEntries;
    if (isOfOtherEntries || sign.empty() || sign != lastSign_ || now >= nextListing_) {
      lastSign_ = std::move(sign);
      nextListing_ = now + longestTrust;
      if (isOfOtherEntries) {
        recordedEntries_ = entries;
        records_.clear();
      }
      isNew |= readList(now, *entries);
    } else if (now >= nextCheck_) {
      isNew = checkThoseDue(now, *entries);
    }
    if (isNew) {
      auto running = summary(*entries);
      const std::lock_guard lock(mutex_);
      isNew = running != running_;
      if (isNew) ++pictureNumber_;
      running_ = std::move(running);
    }
    noteLook(now);
    if (isNew) changes_.raise();
    tellChanges();
  }

  void noteLook(MonotonicTime now) {
    {
      const std::lock_guard lock(mutex_);
      lookedAt_ = now;
    }
    changes_.setStaleAt(now + lookPeriod);
  }

  void tellChanges() {
    std::weak_ptr<std::function<void()>> changed;
    {
      const std::lock_guard lock(mutex_);
      if (!changed_ || toldNumber_ == pictureNumber_) return;
      toldNumber_ = pictureNumber_;
      changed = changed_;
    }
    main_.post([changed] {
      if (const auto callback = changed.lock()) (*callback)();
    });
  }

  /// Whether an application may have come or gone with what the list says.
  bool readList(MonotonicTime now, const DesktopEntries& entries) {
    auto listed = reader_.list();
    std::ranges::sort(listed, {}, &ProcessReader::Listed::pid);
    bool isNew = false;
    std::map<std::int32_t, Record> next;
    for (const auto& process : listed) {
      auto known = records_.extract(process.pid);
      if (known && known.mapped().inode == process.inode) {
        const auto place = next.insert(next.end(), std::move(known));
        isNew |= check(process.pid, place->second, now, entries);
        continue;
      }
      auto record = read(process, now, entries);
      isNew |= !record.identifier.empty() || (known && !known.mapped().identifier.empty());
      next.emplace_hint(next.end(), process.pid, std::move(record));
    }
    isNew |= std::ranges::any_of(records_, [](const auto& gone) { return !gone.second.identifier.empty(); });
    records_ = std::move(next);
    noteNextCheck();
    return isNew;
  }

  /// The same where no process has come or gone.
  bool checkThoseDue(MonotonicTime now, const DesktopEntries& entries) {
    bool isNew = false;
    for (auto& [pid, record] : records_) isNew |= check(pid, record, now, entries);
    noteNextCheck();
    return isNew;
  }

  void noteNextCheck() {
    nextCheck_ = MonotonicTime::max();
    for (const auto& [pid, record] : records_) nextCheck_ = std::min(nextCheck_, record.nextCheck);
  }

  /// A known process is only asked now and then whether it has become another program: whether it has, to an
  /// application or from one.
  bool check(std::int32_t pid, Record& record, MonotonicTime now, const DesktopEntries& entries) {
    if (now < record.nextCheck) return false;
    if (reader_.executableOf(pid) == record.executable) {
      record.interval = std::min(record.interval * 2, lastCheck);
      record.nextCheck = now + record.interval;
      return false;
    }
    const auto former = std::exchange(record, read({pid, record.inode}, now, entries));
    return !former.identifier.empty() || !record.identifier.empty();
  }

  Record read(const ProcessReader::Listed& process, MonotonicTime now, const DesktopEntries& entries) {
    Record record;
    record.inode = process.inode;
    record.order = ++lastOrder_;
    record.nextCheck = now + record.interval;
    const auto facts = reader_.read(process.pid);
    // For another user's process the link itself stands for "nothing has changed".
    record.executable = facts ? facts->executable : reader_.executableOf(process.pid);
    if (facts) {
      const auto match = applications::matchProcess(*facts, entries, identities_);
      record.identifier = match.identifier;
      record.entryID = match.entry == nullptr ? std::string() : match.entry->id;
    }
    return record;
  }

  std::vector<KnownApplication> summary(const DesktopEntries& entries) {
    std::map<std::string, std::vector<const std::pair<const std::int32_t, Record>*>> groups;
    for (const auto& process : records_) {
      if (!process.second.identifier.empty()) groups[process.second.identifier].push_back(&process);
    }
    std::erase_if(firstSeen_, [&](const auto& seen) { return !groups.contains(seen.first); });
    std::vector<KnownApplication> running;
    std::vector<std::pair<std::uint64_t, std::size_t>> order;
    for (auto& [identifier, processes] : groups) {
      std::ranges::sort(processes, {}, [](const auto* process) { return process->second.order; });
      KnownApplication application;
      application.identifier = identifier;
      application.pid = processes.front()->first;
      application.isVisible = false;
      for (const auto* process : processes) {
        const auto* entry = process->second.entryID.empty() ? nullptr : entries.byID(process->second.entryID);
        if (entry == nullptr) continue;
        const bool isVisible = entry->isVisible && !entry->runsInTerminal;
        if (application.name.empty() || (isVisible && !application.isVisible)) {
          application.name = entry->name;
          application.icon = entry->icon;
          application.path = entry->path;
          application.isVisible = isVisible;
        }
      }
      const auto seen = firstSeen_.try_emplace(identifier, processes.front()->second.order).first->second;
      order.emplace_back(seen, running.size());
      running.push_back(std::move(application));
    }
    std::ranges::sort(order);
    std::vector<KnownApplication> ordered;
    ordered.reserve(order.size());
    for (const auto& [seen, index] : order) ordered.push_back(std::move(running[index]));
    return ordered;
  }

  FolderTimes folderTimes() const {
    FolderTimes times;
    for (const auto& folder : places_.folders) {
      struct stat facts{};
      const auto path = folder + "/applications";
      if (::stat(path.c_str(), &facts) == 0) {
        times.emplace_back(facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec);
      } else {
        times.emplace_back(-1, 0);
      }
    }
    return times;
  }

  KnownApplication applicationOf(const applications::DesktopEntry& entry) const {
    return {applications::identifierOf(entry, identities_), entry.name, entry.icon, 0,
            entry.isVisible && !entry.runsInTerminal,       entry.path};
  }

  enum class Freshness { folders, files };

  /// The installed entries; read again once a folder has changed, which is looked for every few seconds, or at once
  /// where a change within a file counts too.
  std::shared_ptr<const DesktopEntries> currentEntries(Freshness freshness = Freshness::folders) {
    const std::lock_guard lock(entriesMutex_);
    const auto now = clocks_.monotonicNow();
    const bool isForced = freshness == Freshness::files;
    if (!isForced && entries_ && now - entriesCheckedAt_ < folderPeriod) return entries_;
    entriesCheckedAt_ = now;
    auto times = folderTimes();
    if (!isForced && entries_ && times == folderTimes_) return entries_;
    folderTimes_ = std::move(times);
    auto read = DesktopEntries::read(places_, [this](const std::string& problem) {
      if (reported_.insert(problem).second) log_.error(problem);
    });
    // What is known of processes goes by the entries, and need not be found out again for the same ones.
    if (entries_ && read->all() == entries_->all()) return entries_;
    entries_ = std::move(read);
    std::map<std::string, KnownApplication> installed;
    for (const auto& entry : entries_->all()) {
      auto application = applicationOf(entry);
      const auto [known, isNew] = installed.try_emplace(application.identifier, application);
      if (!isNew && application.isVisible && !known->second.isVisible) known->second = std::move(application);
    }
    {
      const std::lock_guard installing(mutex_);
      ++pictureNumber_;
      installed_ = std::move(installed);
    }
    changes_.raise();
    return entries_;
  }

  Executor& main_;
  Executor& background_;
  Clocks& clocks_;
  Logger log_;
  const DesktopEntries::Places places_;
  const ProcessReader reader_;
  const Identities& identities_ = Identities::builtIn();
  std::atomic<bool> lookIsPosted_ = false;
  ChangeSignal changes_;

  /// Held during a look; what follows is the look's own.
  std::mutex lookMutex_;
  std::map<std::int32_t, Record> records_;
  std::map<std::string, std::uint64_t> firstSeen_;
  std::shared_ptr<const DesktopEntries> recordedEntries_;
  /// Of the last look that has read the list, and when the next one must at the latest.
  std::string lastSign_;
  MonotonicTime nextListing_{};
  /// When the first of the records is due.
  MonotonicTime nextCheck_{};
  std::uint64_t lastOrder_ = 0;

  std::mutex entriesMutex_;
  std::shared_ptr<const DesktopEntries> entries_;
  MonotonicTime entriesCheckedAt_{};
  FolderTimes folderTimes_;
  std::set<std::string> reported_;

  /// Never held while files are read.
  std::mutex mutex_;
  std::vector<KnownApplication> running_;
  std::map<std::string, KnownApplication> installed_;
  std::uint64_t pictureNumber_ = 0;
  std::uint64_t toldNumber_ = 0;
  std::shared_ptr<std::function<void()>> changed_;
  std::optional<MonotonicTime> lookedAt_;
};

ApplicationRegistry::ApplicationRegistry(const Runtime& runtime, ApplicationRegistryOptions options)
    : core_(std::make_shared<Core>(runtime, std::move(options))) {
  core_->lookInBackground();
}

ApplicationRegistry::~ApplicationRegistry() = default;

std::string ApplicationRegistry::identify(const ClientFacts& facts) { return core_->identify(facts); }

std::vector<KnownApplication> ApplicationRegistry::runningApplications() { return core_->runningApplications(); }

std::uint64_t ApplicationRegistry::pictureNumber() { return core_->pictureNumber(); }

const ChangeSignal& ApplicationRegistry::changes() const { return core_->changes(); }

std::optional<KnownApplication> ApplicationRegistry::application(const std::string& identifier) {
  return core_->application(identifier);
}

std::vector<KnownApplication> ApplicationRegistry::listedApplications() { return core_->listedApplications(); }

std::optional<KnownApplication> ApplicationRegistry::applicationAt(const std::string& path) {
  return core_->applicationAt(path);
}

void ApplicationRegistry::onChanged(std::function<void()> callback) { core_->onChanged(std::move(callback)); }

std::int32_t ApplicationRegistry::representativePID(std::int32_t pid, const std::string& desktopEntry) {
  return core_->representativePID(pid, desktopEntry);
}

}  // namespace quillmere
