#include "platform/atomic_file.h"

#include <filesystem>
#include <new>
#include <span>
#include <stdexcept>
#include <string>
#include <system_error>

#include <gtest/gtest.h>

#include "tests/platform/files.h"
#if defined(__unix__)
#include <chrono>
#include <csignal>
#include <cstdlib>
#include <thread>

#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#endif

namespace orvandel::test {
namespace {

namespace fs = std::filesystem;

const Bytes kOld = BytesOf("old");
const Bytes kNew = BytesOf("new contents");

std::error_code Write(const fs::path& path, const Bytes& bytes) {
  return WriteFileAtomically(path, std::as_bytes(std::span(bytes)));
}

/// A folder with a file of old contents.
class AtomicFile : public testing::Test {
 protected:
  AtomicFile() { WriteBytes(file_, kOld); }

  void ExpectOldFileAlone() const {
    EXPECT_EQ(ReadBytes(file_), kOld);
    EXPECT_EQ(folder_.Names().size(), 1U);
  }

  ScratchFolder folder_;
  fs::path file_ = folder_ / "file.txt";
};

TEST_F(AtomicFile, IsMadeWhereThereWasNone) {
  const fs::path path = folder_ / "another";
  EXPECT_FALSE(Write(path, kNew));
  EXPECT_EQ(ReadBytes(path), kNew);
  EXPECT_EQ(folder_.Names().size(), 2U);
}

TEST_F(AtomicFile, TakesAnOlderOnesPlace) {
  EXPECT_FALSE(Write(file_, kNew));
  EXPECT_EQ(ReadBytes(file_), kNew);
  EXPECT_EQ(folder_.Names().size(), 1U);
}

TEST_F(AtomicFile, MayBeEmpty) {
  EXPECT_FALSE(Write(file_, {}));
  EXPECT_EQ(ReadBytes(file_), Bytes());
  EXPECT_EQ(folder_.Names().size(), 1U);
}

TEST_F(AtomicFile, MayBeLong) {
  Bytes bytes(3'000'000);
  for (std::size_t i = 0; i < bytes.size(); ++i)
    bytes[i] = static_cast<std::uint8_t>(i * i >> 7);
  EXPECT_FALSE(Write(file_, bytes));
  EXPECT_TRUE(ReadBytes(file_) == bytes);
}

TEST_F(AtomicFile, MayHaveTheLongestNameThereIs) {
  const fs::path path = folder_ / std::string(255, 'n');
  EXPECT_FALSE(Write(path, kNew));
  EXPECT_EQ(ReadBytes(path), kNew);
}

TEST_F(AtomicFile, InAMissingFolderIsAnError) {
  EXPECT_EQ(Write(folder_ / "none" / "file.txt", kNew), std::errc::no_such_file_or_directory);
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, InPlaceOfAFolderIsAnError) {
  EXPECT_EQ(Write(file_.parent_path(), kNew), std::errc::is_a_directory);
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, BelowAFileIsAnError) {
  EXPECT_TRUE(Write(file_ / "file.txt", kNew));
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, WithoutANameIsAnError) {
  EXPECT_TRUE(Write("", kNew));
}

TEST_F(AtomicFile, ThatNobodyMayWriteIsLeftAlone) {
  fs::permissions(file_, fs::perms::owner_read);
  EXPECT_EQ(Write(file_, kNew), std::errc::permission_denied);
  ExpectOldFileAlone();
  fs::permissions(file_, fs::perms::owner_all);
}

TEST_F(AtomicFile, IsFilledByAnother) {
  fs::path given;
  EXPECT_FALSE(ReplaceFileAtomically(file_, [&](const fs::path& path) {
    given = path;
    EXPECT_EQ(ReadBytes(file_), kOld);  // until all is written
    EXPECT_EQ(path.parent_path(), file_.parent_path());
    EXPECT_EQ(path.extension(), ".txt");
    EXPECT_EQ(fs::file_size(path), 0U);
    WriteBytes(path, kNew);
    return std::error_code();
  }));
  EXPECT_NE(given, file_);
  EXPECT_EQ(ReadBytes(file_), kNew);
  EXPECT_EQ(folder_.Names().size(), 1U);
}

TEST_F(AtomicFile, WhoseWriterFailsLeavesTheOldOne) {
  EXPECT_EQ(ReplaceFileAtomically(file_,
                                  [](const fs::path& path) {
                                    WriteBytes(path, kNew);
                                    return std::make_error_code(std::errc::io_error);
                                  }),
            std::errc::io_error);
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, WhoseWriterThrowsLeavesTheOldOne) {
  const auto result_of = [&](auto exception) {
    return ReplaceFileAtomically(file_,
                                 [&](const fs::path&) -> std::error_code { throw exception; });
  };
  EXPECT_EQ(result_of(std::bad_alloc()), std::errc::not_enough_memory);
  EXPECT_EQ(result_of(std::runtime_error("no")), std::errc::io_error);
  EXPECT_EQ(result_of(std::system_error(std::make_error_code(std::errc::no_space_on_device))),
            std::errc::no_space_on_device);
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, WhoseWriterRemovesItLeavesTheOldOne) {
  EXPECT_TRUE(ReplaceFileAtomically(file_, [](const fs::path& path) {
    fs::remove(path);
    return std::error_code();
  }));
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, WritersMayNest) {
  EXPECT_FALSE(
      ReplaceFileAtomically(file_, [](const fs::path& path) { return Write(path, kNew); }));
  EXPECT_EQ(ReadBytes(file_), kNew);
  EXPECT_EQ(folder_.Names().size(), 1U);
}

#if defined(__unix__)
TEST_F(AtomicFile, BehindALinkIsReplacedAndTheLinkStays) {
  fs::create_symlink("file.txt", folder_ / "relative");
  fs::create_symlink(folder_ / "relative", folder_ / "absolute");
  EXPECT_FALSE(Write(folder_ / "absolute", kNew));
  EXPECT_TRUE(fs::is_symlink(folder_ / "relative"));
  EXPECT_TRUE(fs::is_symlink(folder_ / "absolute"));
  EXPECT_EQ(ReadBytes(file_), kNew);
  EXPECT_EQ(folder_.Names().size(), 3U);
}

TEST_F(AtomicFile, BehindALinkToNothingIsMade) {
  fs::create_symlink("not there yet", folder_ / "link");
  EXPECT_FALSE(Write(folder_ / "link", kNew));
  EXPECT_TRUE(fs::is_symlink(folder_ / "link"));
  EXPECT_EQ(ReadBytes(folder_ / "not there yet"), kNew);
}

TEST_F(AtomicFile, BehindALinkToItselfIsAnError) {
  fs::create_symlink("link", folder_ / "link");
  EXPECT_EQ(Write(folder_ / "link", kNew), std::errc::too_many_symbolic_link_levels);
}

TEST_F(AtomicFile, KeepsItsPermissions) {
  for (const fs::perms permissions :
       {fs::perms(0600), fs::perms(0640), fs::perms(0666), fs::perms(0755)}) {
    fs::permissions(file_, permissions);
    EXPECT_FALSE(Write(file_, kNew));
    EXPECT_EQ(fs::status(file_).permissions(), permissions);
  }
}

TEST_F(AtomicFile, ThatIsNewHasTheUsualPermissions) {
  const mode_t mask = umask(027);
  EXPECT_FALSE(Write(folder_ / "another", kNew));
  umask(mask);
  EXPECT_EQ(fs::status(folder_ / "another").permissions(), fs::perms(0640));
}

/// Files may grow to so many bytes only; writing more fails as on a full disk.
class FileSizeLimit {
 public:
  explicit FileSizeLimit(rlim_t bytes) : old_handler_(std::signal(SIGXFSZ, SIG_IGN)) {
    getrlimit(RLIMIT_FSIZE, &old_limit_);
    const rlimit limit = {bytes, old_limit_.rlim_max};
    setrlimit(RLIMIT_FSIZE, &limit);
  }
  FileSizeLimit(const FileSizeLimit&) = delete;
  FileSizeLimit& operator=(const FileSizeLimit&) = delete;
  ~FileSizeLimit() {
    setrlimit(RLIMIT_FSIZE, &old_limit_);
    std::signal(SIGXFSZ, old_handler_);
  }

 private:
  void (*old_handler_)(int);
  rlimit old_limit_{};
};

TEST_F(AtomicFile, ThatDoesNotFitLeavesTheOldOne) {
  for (const rlim_t room : {0U, 1U, 11U}) {
    const FileSizeLimit limit(room);
    EXPECT_EQ(Write(file_, kNew), std::errc::file_too_large) << room;
  }
  ExpectOldFileAlone();
  const FileSizeLimit limit(kNew.size());
  EXPECT_FALSE(Write(file_, kNew));
}

/// A process that writes the file over and over, all bytes of a round alike, until it is killed.
pid_t StartWriter(const fs::path& file) {
  const pid_t writer = fork();
  if (writer != 0) return writer;
  for (unsigned char round = 1;; round = static_cast<unsigned char>(round % 250 + 1)) {
    const Bytes bytes(200000, round);
    if (WriteFileAtomically(file, std::as_bytes(std::span(bytes)))) _exit(1);
  }
}

TEST_F(AtomicFile, OfAWriterThatIsKilledIsWhole) {
  for (int kill_after_ms = 0; kill_after_ms < 40; ++kill_after_ms) {
    const pid_t writer = StartWriter(file_);
    ASSERT_GT(writer, 0);
    std::this_thread::sleep_for(std::chrono::milliseconds(kill_after_ms));
    kill(writer, SIGKILL);
    int status = 0;
    ASSERT_EQ(waitpid(writer, &status, 0), writer);
    ASSERT_TRUE(WIFSIGNALED(status)) << "the writer failed";

    const Bytes bytes = ReadBytes(file_);
    if (bytes == kOld) continue;
    ASSERT_EQ(bytes.size(), 200000U);
    ASSERT_EQ(bytes, Bytes(200000, bytes.front()));
  }
}

/// The administrator may write everywhere; while this lives, the process is a user who may not.
class OrdinaryUser {
 public:
  OrdinaryUser() {
    constexpr uid_t kNobody = 65534;
    if (user_before_ == 0) is_ordinary_ = seteuid(kNobody) == 0;
  }
  OrdinaryUser(const OrdinaryUser&) = delete;
  OrdinaryUser& operator=(const OrdinaryUser&) = delete;
  ~OrdinaryUser() {
    if (user_before_ == 0 && seteuid(user_before_) != 0) std::abort();
  }

  bool IsOrdinary() const { return is_ordinary_; }

 private:
  uid_t user_before_ = geteuid();
  bool is_ordinary_ = true;
};

TEST_F(AtomicFile, InAReadOnlyFolderIsAnError) {
  const fs::path folder = file_.parent_path();
  constexpr auto kAllMayRead = fs::perms::owner_read | fs::perms::owner_exec |
                               fs::perms::others_read | fs::perms::others_exec;
  fs::permissions(folder, kAllMayRead);
  {
    const OrdinaryUser user;
    ASSERT_TRUE(user.IsOrdinary());
    EXPECT_EQ(Write(folder / "new.txt", kNew), std::errc::permission_denied);
    EXPECT_EQ(Write(file_, kNew), std::errc::permission_denied);
  }
  fs::permissions(folder, fs::perms::owner_all);
  ExpectOldFileAlone();
}

TEST_F(AtomicFile, OfADeviceIsWrittenThrough) {
  EXPECT_FALSE(Write("/dev/null", kNew));
  EXPECT_TRUE(fs::is_character_file("/dev/null"));
}
#endif

#if defined(__linux__)
TEST_F(AtomicFile, WhereNobodyMayMakeFilesIsAnError) {
  EXPECT_TRUE(Write("/proc/orvandel.txt", kNew));
}

TEST_F(AtomicFile, OfAFullDeviceIsAnError) {
  if (!fs::exists("/dev/full")) GTEST_SKIP() << "no /dev/full here";
  EXPECT_EQ(Write("/dev/full", kNew), std::errc::no_space_on_device);
  fs::create_symlink("/dev/full", folder_ / "link");
  EXPECT_EQ(Write(folder_ / "link", kNew), std::errc::no_space_on_device);
  EXPECT_TRUE(fs::is_character_file("/dev/full"));
}
#endif

}  // namespace
}  // namespace orvandel::test
