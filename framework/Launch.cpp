#include "framework/Launch.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>
#ifdef __linux__
#include <sys/mman.h>
#endif

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <mutex>
#include <system_error>
#include <thread>

#include "framework/Folders.h"
#include "framework/Pipe.h"

extern char** environ;

namespace {

/// Why a file cannot be run, 0 if it can.
int ReasonAgainst(const std::string& path) {
  struct stat status {};
  if (stat(path.c_str(), &status) != 0) return errno == ENOTDIR ? ENOENT : errno;
  if (!S_ISREG(status.st_mode)) return EACCES;
  return access(path.c_str(), X_OK) == 0 ? 0 : errno;
}

struct Lookup {
  int error;  // ENOENT where there is no such command, 0 where it can be run
  std::string path;
};

Lookup FindCommand(const std::string& name, const std::string& path, const std::string& toolFolder) {
  if (name.find('/') != std::string::npos) return {ReasonAgainst(name), name};
  std::vector<std::string> folders;
  for (std::size_t begin = 0, end; begin < path.size(); begin = end + 1) {
    end = std::min(path.find(':', begin), path.size());
    folders.push_back(path.substr(begin, end - begin));
  }
  folders.push_back(toolFolder);
  Lookup best{ENOENT, {}};
  for (const std::string& folder : folders) {
    if (!folder.starts_with('/')) continue;
    std::string candidate = folder + "/" + name;
    const int error = ReasonAgainst(candidate);
    if (error == 0) return {0, std::move(candidate)};
    if (best.error == ENOENT) best.error = error;
  }
  return best;
}

/// What the child gets besides its words.
class SpawnPlan {
 public:
  explicit SpawnPlan(int outputFd) {
    posix_spawn_file_actions_init(&actions_);
    Need(posix_spawn_file_actions_addopen(&actions_, STDIN_FILENO, "/dev/null", O_RDONLY, 0));
    Need(posix_spawn_file_actions_adddup2(&actions_, outputFd, STDOUT_FILENO));

    posix_spawnattr_init(&attributes_);
    short flags = POSIX_SPAWN_SETPGROUP | POSIX_SPAWN_SETSIGDEF | POSIX_SPAWN_SETSIGMASK;
#if defined(__APPLE__)
    flags |= POSIX_SPAWN_CLOEXEC_DEFAULT;
    Need(posix_spawn_file_actions_addinherit_np(&actions_, STDERR_FILENO));
#elif defined(__GLIBC__)
    Need(posix_spawn_file_actions_addclosefrom_np(&actions_, STDERR_FILENO + 1));
#endif
    sigset_t signals;
    sigfillset(&signals);
    posix_spawnattr_setsigdefault(&attributes_, &signals);
    sigemptyset(&signals);
    posix_spawnattr_setsigmask(&attributes_, &signals);
    posix_spawnattr_setpgroup(&attributes_, 0);
    posix_spawnattr_setflags(&attributes_, flags);
  }
  ~SpawnPlan() {
    posix_spawn_file_actions_destroy(&actions_);
    posix_spawnattr_destroy(&attributes_);
  }
  SpawnPlan(const SpawnPlan&) = delete;
  SpawnPlan& operator=(const SpawnPlan&) = delete;

  int Spawn(pid_t& pid, const std::string& path, const std::vector<std::string>& words) {
    std::vector<char*> argv;
    argv.reserve(words.size() + 1);
    for (const std::string& word : words) argv.push_back(const_cast<char*>(word.c_str()));
    argv.push_back(nullptr);
    return error_ != 0 ? error_
                       : posix_spawn(&pid, path.c_str(), &actions_, &attributes_, argv.data(), environ);
  }

 private:
  void Need(int error) {
    if (error != 0) error_ = error;
  }

  int error_ = 0;  // why the child could not be prepared
  posix_spawn_file_actions_t actions_;
  posix_spawnattr_t attributes_;
};

Descriptor OpenNamelessFile() {
#ifdef __linux__
  if (Descriptor memory(memfd_create("output", MFD_CLOEXEC)); memory) return memory;
#endif
  std::string path = Environment("TMPDIR", "/tmp") + "/output-XXXXXX";
  Descriptor file(mkstemp(path.data()));
  if (!file) return file;
  unlink(path.c_str());
  fcntl(file.Fd(), F_SETFD, FD_CLOEXEC);
  return file;
}

/// A limit on the size of files would end a command that prints into one.
bool FilesAreLimited() {
  rlimit limit{};
  return getrlimit(RLIMIT_FSIZE, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
}

Descriptor OpenFile() {
  Descriptor file = FilesAreLimited() ? Descriptor() : OpenNamelessFile();
  if (file) fcntl(file.Fd(), F_SETFL, O_APPEND);
  return file;
}

}  // namespace

struct Launch::Job {
  Job(const std::vector<std::string>& theWords, const std::string& folder, Outlet wanted)
      : words(theWords), path(Environment("PATH")), toolFolder(folder), outlet(wanted) {}

  std::vector<std::string> words;
  std::string path, toolFolder;
  Outlet outlet;
  Pipe done;

  std::mutex mutex;  // guards what follows
  bool abandoned = false;
  std::optional<Outcome> outcome;

  bool IsAbandoned() {
    const std::lock_guard lock(mutex);
    return abandoned;
  }
  Outcome Fail(int status, int error) const {
    std::fprintf(stderr, "%s: %s\n", words.front().c_str(), std::strerror(error));
    return {-1, status, outlet, {}};
  }
  Outcome Start();
};

Launch::Outcome Launch::Job::Start() {
  if (words.empty()) return {};
  const Lookup command = FindCommand(words.front(), path, toolFolder);
  if (command.error != 0) return Fail(command.error == ENOENT ? kNotFound : kCannotRun, command.error);
  // A word with a NUL would reach the command cut short, as another word.
  const auto holdsNul = [](const std::string& word) { return word.find('\0') != std::string::npos; };
  if (std::any_of(words.begin(), words.end(), holdsNul)) return Fail(kCannotRun, EINVAL);

  Outcome started{-1, 0, outlet, outlet == Outlet::kFile ? OpenFile() : Descriptor()};
  Pipe pipe;
  if (!started.output) {
    pipe = Pipe::Open();
    if (pipe.ReadFd() < 0) return Fail(kCannotRun, errno);
    started.outlet = Outlet::kPipe;
    started.output = pipe.TakeReadEnd();
    fcntl(started.output.Fd(), F_SETFL, O_NONBLOCK);
  }
  if (IsAbandoned()) return {};
  const int outputFd = started.outlet == Outlet::kFile ? started.output.Fd() : pipe.WriteFd();
  if (const int error = SpawnPlan(outputFd).Spawn(started.pid, command.path, words); error != 0)
    return Fail(kCannotRun, error);
  return started;
}

Launch::Outcome Launch::OnThisThread(const std::vector<std::string>& words, const std::string& toolFolder) {
  Job job(words, toolFolder, Outlet::kPipe);
  Run(job);
  return std::move(*job.outcome);
}

Launch::Launch(const std::vector<std::string>& words, const std::string& toolFolder)
    : job_(std::make_shared<Job>(words, toolFolder, Outlet::kFile)) {
  job_->done = Pipe::Open();
  if (job_->done.ReadFd() < 0) {
    job_->outcome = job_->Fail(kCannotRun, errno);
    return;
  }
  try {
    std::thread([job = job_] { Run(*job); }).detach();
  } catch (const std::system_error& error) {
    job_->outcome = job_->Fail(kCannotRun, error.code().value());
  }
}

Launch::~Launch() {
  const std::lock_guard lock(job_->mutex);
  job_->abandoned = true;
}

void Launch::Run(Job& job) {
  Outcome outcome;
  try {
    outcome = job.Start();
  } catch (const std::bad_alloc&) {
    outcome = job.Fail(kCannotRun, ENOMEM);
  }
  const std::lock_guard lock(job.mutex);
  if (job.abandoned && outcome.pid >= 0 && outcome.outlet == Outlet::kPipe) kill(-outcome.pid, SIGTERM);
  job.outcome = std::move(outcome);
  job.done.CloseWriteEnd();  // which cannot fail, and whoever waits sees the end
}

int Launch::DoneFd() const {
  const std::lock_guard lock(job_->mutex);
  return job_->outcome ? -1 : job_->done.ReadFd();
}

std::optional<Launch::Outcome> Launch::TakeOutcome() {
  const std::lock_guard lock(job_->mutex);
  return std::exchange(job_->outcome, std::nullopt);
}
