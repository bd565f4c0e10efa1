#include <gtest/gtest.h>

#include "kiln/store/Database.h"
#include "kiln/store/Migrations.h"
#include "kiln/store/Statement.h"
#include "protocol/ErrorCodes.h"
#include "support/TemporaryFolder.h"

namespace kiln {
namespace {

constexpr const char* kOne = "CREATE TABLE one (a TEXT); INSERT INTO one VALUES ('kept')";
constexpr const char* kTwo = "ALTER TABLE one ADD COLUMN b INTEGER NOT NULL DEFAULT 7";
constexpr const char* kBroken = "CREATE TABLE three (a); CREATE TABLE three (a)";

class MigrationsTest : public testing::Test {
 protected:
  uint32_t MigrateTo(std::vector<const char*> steps) {
    uint32_t error = 0;
    const std::unique_ptr<Database> database = Database::Open(mFolder.Path("db"), error);
    if (!database) return error;
    error = Migrate(*database, steps);
    database->ReadNumber("PRAGMA user_version", mVersion);
    return error;
  }

  TemporaryFolder mFolder;
  int64_t mVersion = -1;
};

TEST_F(MigrationsTest, RunsEachStepOnceAndKeepsWhatIsThere) {
  EXPECT_EQ(MigrateTo({kOne}), codes::kSuccess);
  EXPECT_EQ(mVersion, 1);
  EXPECT_EQ(MigrateTo({kOne, kTwo}), codes::kSuccess);
  EXPECT_EQ(MigrateTo({kOne, kTwo}), codes::kSuccess);
  EXPECT_EQ(mVersion, 2);
  uint32_t error = 0;
  const std::unique_ptr<Database> database = Database::Open(mFolder.Path("db"), error);
  Statement kept(*database, "SELECT count(*) FROM one WHERE a = ? AND b = ?");
  kept.Start("kept", 7);
  ASSERT_TRUE(kept.Next());
  EXPECT_EQ(kept.Number(0), 1);
}

TEST_F(MigrationsTest, AStepThatFailsLeavesTheVersionBeforeIt) {
  EXPECT_EQ(MigrateTo({kOne, kBroken}), codes::kDatabaseError);
  EXPECT_EQ(mVersion, 1);
  EXPECT_EQ(MigrateTo({kOne, kTwo}), codes::kSuccess) << "nothing of the failed step is left";
}

TEST_F(MigrationsTest, ANewerDatabaseIsRefusedUntouched) {
  ASSERT_EQ(MigrateTo({kOne, kTwo}), codes::kSuccess);
  const std::string before = mFolder.Read("db");
  EXPECT_EQ(MigrateTo({kOne}), codes::kSchemaVersionMismatch);
  EXPECT_EQ(mFolder.Read("db"), before);
}

TEST_F(MigrationsTest, ADamagedDatabaseIsRefusedUntouched) {
  ASSERT_EQ(MigrateTo({kOne}), codes::kSuccess);
  std::string damaged = mFolder.Read("db");
  for (size_t i = 100; i < 4096 && i < damaged.size(); ++i) damaged[i] = '\xAA';  // the schema's page
  struct {
    const char* name;
    std::string bytes;
  } const cases[] = {
      {"a text", "no database, but long enough to be looked at as one" + std::string(200, '.')},
      {"a broken page", damaged}};
  for (const auto& one : cases) {
    SCOPED_TRACE(one.name);
    mFolder.Write("db", one.bytes);
    EXPECT_EQ(MigrateTo({kOne}), codes::kDatabaseCorrupted);
    EXPECT_EQ(mFolder.Read("db"), one.bytes);
  }
}

TEST_F(MigrationsTest, TheLibrarysOwnStepsGiveASoundDatabase) {
  uint32_t error = 0;
  const std::unique_ptr<Database> database = Database::Open(mFolder.Path("library"), error);
  ASSERT_TRUE(database);
  EXPECT_EQ(Migrate(*database, LibraryMigrations()), codes::kSuccess);
  int64_t number = 0;
  EXPECT_TRUE(database->ReadNumber("SELECT count(*) FROM workgroups", number));
  EXPECT_EQ(number, 2);
  // Names come from strangers; they are values, never SQL.
  Statement add(*database, "INSERT INTO workgroups (name, type) VALUES (?, ?)");
  EXPECT_TRUE(add.Run("'); DROP TABLE fonts; --", 3));
  EXPECT_TRUE(database->ReadNumber("SELECT count(*) FROM fonts", number));
  EXPECT_FALSE(database->Execute("INSERT INTO fonts (file_id) VALUES (99)")) << "foreign keys are on";
}

}  // namespace
}  // namespace kiln
