#include <CommandProcessor/platform/VersionStore.h>

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>

#ifdef _WIN32
#include <windows.h>
#endif

namespace poker {
namespace {

#ifdef _WIN32

TEST(VersionStore, ReturnsWhatWasStored) {
  constexpr const char* kSubkey = "Software\\CommandProcessorTests\\VersionStore";
  HKEY key = nullptr;
  ASSERT_EQ(RegCreateKeyA(HKEY_CURRENT_USER, kSubkey, &key), ERROR_SUCCESS);
  RegCloseKey(key);
  for (const std::uint32_t version : {0u, 7u, 0xFFFFFFFFu}) {
    ASSERT_TRUE(storeLastVersion(kSubkey, version));
    EXPECT_EQ(loadLastVersion(kSubkey), version);
  }
  EXPECT_FALSE(storeLastVersion("", 1));
  EXPECT_FALSE(storeLastVersion(nullptr, 1));
  EXPECT_FALSE(loadLastVersion("Software\\CommandProcessorTests\\Nowhere"));
}

#else

namespace fs = std::filesystem;

class VersionStore : public testing::Test {
 protected:
  void SetUp() override {
    std::string name = (fs::temp_directory_path() / "version-store-XXXXXX").string();
    ASSERT_NE(mkdtemp(name.data()), nullptr);
    root_ = name;
    setenv("XDG_CONFIG_HOME", (root_ / "xdg").c_str(), 1);
    setenv("HOME", (root_ / "home").c_str(), 1);
  }
  void TearDown() override { fs::remove_all(root_); }

  fs::path root_;
};

TEST_F(VersionStore, ReturnsWhatWasStoredLastAndLeavesNoOtherFile) {
  for (const std::uint32_t version : {0xFFFFFFFFu, 0u, 7u}) {
    ASSERT_TRUE(storeLastVersion("Vendor\\Client", version));
    EXPECT_EQ(loadLastVersion("Vendor\\Client"), version);
  }
  EXPECT_FALSE(loadLastVersion("Vendor"));
  EXPECT_FALSE(storeLastVersion("Vendor\\Client\\Last Version\\x", 8));  // a file stands in the way
  const fs::path folder = root_ / "xdg/Vendor/Client";
  EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1);
  EXPECT_TRUE(fs::exists(folder / "Last Version"));
}

TEST_F(VersionStore, LeavesTheConfigFolderForNoSubkey) {
  for (const char* subkey : {"", "\\", "..", "..\\x", "a\\..\\..\\x", "/etc", "\\a", "a\\\\b", "a\\", ".", "a/./b"}) {
    EXPECT_FALSE(storeLastVersion(subkey, 1)) << subkey;
    EXPECT_FALSE(loadLastVersion(subkey)) << subkey;
  }
  EXPECT_FALSE(storeLastVersion(nullptr, 1));
  EXPECT_TRUE(fs::is_empty(root_));
}

TEST_F(VersionStore, FallsBackToTheHomeFolder) {
  setenv("XDG_CONFIG_HOME", "relative", 1);
  ASSERT_TRUE(storeLastVersion("a", 5));
  EXPECT_TRUE(fs::exists(root_ / "home/.config/a/Last Version"));
  unsetenv("XDG_CONFIG_HOME");
  EXPECT_EQ(loadLastVersion("a"), 5u);
  unsetenv("HOME");
  EXPECT_FALSE(storeLastVersion("a", 6));
  EXPECT_FALSE(loadLastVersion("a"));
}

TEST_F(VersionStore, TakesNoDamagedFileForAVersion) {
  ASSERT_TRUE(storeLastVersion("a", 5));
  for (const char* text : {"", "\n", "x", "-1\n", " 5\n", "4294967296\n", "5 6\n", "5\n\n", "00000000000000000005"}) {
    std::ofstream(root_ / "xdg/a/Last Version", std::ios::trunc) << text;
    EXPECT_FALSE(loadLastVersion("a")) << text;
  }
}

#endif

}  // namespace
}  // namespace poker
