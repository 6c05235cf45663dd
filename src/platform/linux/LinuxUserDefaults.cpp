// A change is added to the pending ones and shown to this process's readers at once; a flush then applies all that are
// pending to the state on the disk, under the lock between processes, and forgets them when they are written. So
// changes that come while another is being written go to the disk together, and what couldn't be written is not lost.
//
// Two locks: `writing` is held through a flush and may be held long; `state` guards what readers see and is held for a
// look at the file. `writing` is taken first.
#include "platform/linux/LinuxUserDefaults.h"

#include "platform/FileFailure.h"
#include "platform/Logger.h"
#include "platform/Mutex.h"
#include "platform/linux/BaseDirectories.h"
#include "platform/linux/DefaultsObservers.h"
#include "platform/linux/PendingChanges.h"
#include "platform/linux/SettingsFile.h"
#include "platform/linux/SettingsThread.h"

#include <cerrno>
#include <cstddef>
#include <set>
#include <string>
#include <utility>

namespace tabwright::platform {

namespace {

const Logger defaultsLog("UserDefaults");

} // namespace

std::filesystem::path defaultSettingsFile() {
  return configHome() / "tabwright" / "settings.plist";
}

struct LinuxUserDefaults::Parts {
  explicit Parts(const LinuxUserDefaultsOptions& options) : file(options.file), lockWait(options.lockWait) {}

  // Takes up what is on the disk now. What can't be read leaves the values as they are.
  void refresh() REQUIRES(state) {
    try {
      SettingsFile::SnapshotPointer loaded = file.load(snapshot);
      if (loaded != snapshot)
        show(std::move(loaded));
    } catch (const FileFailure& failure) {
      logOnce(failure);
    }
  }

  void show(SettingsFile::SnapshotPointer loaded) REQUIRES(state) {
    snapshot = std::move(loaded);
    shown = snapshot->document;
    pending.applyTo(shown);
  }

  // The change is applied twice, here and in the next flush, since the state on the disk may be another by then.
  void add(DefaultsUpdate change) {
    const MutexLock lock(state);
    refresh();
    applyChange(change, shown);
    if (!pending.add(std::move(change)) && !std::exchange(isLossLogged, true))
      defaultsLog.error("More than {} changes of the settings can't be stored: the oldest are given up",
                        PendingChanges::limit);
  }

  // The pending changes on top of what is on the disk; their end; the state beneath them.
  struct Batch {
    SettingsFile::SnapshotPointer old;
    PropertyListDocument document;
    AppliedChanges applied;
    std::size_t end = 0;
  };
  Batch makeBatch() REQUIRES(writing) {
    const MutexLock lock(state);
    Batch batch{.old = file.load(snapshot), .document = {}, .applied = {}, .end = pending.end()};
    batch.document = batch.old->document;
    batch.applied = pending.applyTo(batch.document);
    return batch;
  }

  // Brings the pending changes to the disk. Doesn't throw for what the machine refuses: they stay pending then.
  void flush() {
    const MutexLock lock(writing);
    {
      const MutexLock stateLock(state);
      if (pending.isEmpty()) // another flush has taken them along
        return;
    }
    try {
      // A lock that was waited for in vain is only tried from then on: else each change of a run would wait anew.
      const FileLock fileLock = file.lock(isLockHeldUp ? std::chrono::nanoseconds::zero() : lockWait);
      isLockHeldUp = false;
      Batch batch = makeBatch();
      SettingsFile::SnapshotPointer written = batch.old;
      // A change that makes no difference leaves the file as it is, so that no other process has to read it again.
      if (batch.applied.isChanged)
        written = file.replace(*batch.old, std::move(batch.document),
                               batch.applied.replacesOtherType ? SettingsFile::OldFile::keepAside
                                                               : SettingsFile::OldFile::replace);
      const MutexLock stateLock(state);
      pending.removeUpTo(batch.end);
      show(std::move(written));
      // A failure after a success is news again.
      logged.clear();
      isLossLogged = false;
    } catch (const FileFailure& failure) {
      isLockHeldUp = failure.errorNumber() == EWOULDBLOCK;
      const MutexLock stateLock(state);
      logOnce(failure);
    }
  }

  void logOnce(const FileFailure& failure) REQUIRES(state) {
    const std::string text = failure.errorDescription();
    if (logged.insert(text).second)
      defaultsLog.error("{}", text);
  }

  const SettingsFile file;
  const std::chrono::nanoseconds lockWait;
  DefaultsObservers observers;

  Mutex writing;
  bool isLockHeldUp GUARDED_BY(writing) = false;

  Mutex state;
  SettingsFile::SnapshotPointer snapshot GUARDED_BY(state);
  PendingChanges pending GUARDED_BY(state);
  PropertyListDocument shown GUARDED_BY(state);   // the snapshot with the pending changes in it
  std::set<std::string> logged GUARDED_BY(state); // failures since the last write that succeeded
  bool isLossLogged GUARDED_BY(state) = false;

  std::unique_ptr<SettingsThread> thread; // uses all of the above
};

LinuxUserDefaults::LinuxUserDefaults(const LinuxUserDefaultsOptions& options)
    : parts_(std::make_unique<Parts>(options)) {
  parts_->thread = std::make_unique<SettingsThread>(SettingsThread::Work{
      .write =
          [this] {
            parts_->flush();
            parts_->observers.notify(*this);
          },
      .fileChanged = [this] { parts_->observers.notify(*this); },
  });
}

LinuxUserDefaults::~LinuxUserDefaults() {
  // The thread ends first, so that no write of its is under way; what it was asked for is done below.
  parts_->thread.reset();
  parts_->flush();
}

std::optional<DefaultsValue> LinuxUserDefaults::find(const std::string& name) const {
  const MutexLock lock(parts_->state);
  parts_->refresh();
  return parts_->shown.find(name);
}

void LinuxUserDefaults::update(DefaultsUpdate change) {
  parts_->add(std::move(change));
  parts_->flush();
  parts_->observers.notify(*this);
}

void LinuxUserDefaults::updateSoon(DefaultsUpdate change) {
  parts_->add(std::move(change));
  parts_->thread->requestWrite();
  parts_->observers.notify(*this);
}

DefaultsObservation LinuxUserDefaults::observe(const std::string& name, std::function<void()> callback) {
  try {
    ensurePrivateFolder(parts_->file.path().parent_path());
    // The folder is made beforehand, since a missing one can't be watched. Without it observers hear of this process's
    // changes alone.
    parts_->thread->follow(parts_->file.path());
  } catch (const FileFailure& failure) {
    const MutexLock lock(parts_->state);
    parts_->logOnce(failure);
  }
  return parts_->observers.add(name, find(name), std::move(callback));
}

} // namespace tabwright::platform
