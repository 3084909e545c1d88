// The behaviour every store must share, run against the file store and the
// memory store alike.
#include "core/ini_store.h"
#include "core/key_value_store.h"

#include <QTemporaryDir>
#include <gtest/gtest.h>

#include "print_qstring.h"
#include <memory>

using namespace orm;

namespace {

struct MemoryMaker {
    std::unique_ptr<KeyValueStore> make() { return std::make_unique<MemoryStore>(); }
};

struct IniMaker {
    QTemporaryDir dir;
    std::unique_ptr<KeyValueStore> make() { return std::make_unique<IniStore>(dir.filePath(QStringLiteral("o.conf"))); }
};

template <typename Maker>
class StoreContract : public ::testing::Test {
protected:
    Maker maker;
    std::unique_ptr<KeyValueStore> store = maker.make();
};

using Makers = ::testing::Types<MemoryMaker, IniMaker>;
TYPED_TEST_SUITE(StoreContract, Makers);

TYPED_TEST(StoreContract, MissingGivesDefaultButEmptyStaysEmpty)
{
    KeyValueStore& s = *this->store;
    EXPECT_EQ(s.readValue("Settings", "Sensors", "0"), "0");
    EXPECT_EQ(s.readValue("Settings/Sensor9/Node1", "Name", "dflt"), "dflt");
    ASSERT_TRUE(s.writeValue("Settings/Sensor1", "Description", ""));
    EXPECT_EQ(s.readValue("Settings/Sensor1", "Description", "dflt"), "");
    // Value names are exact: another case is another value.
    s.writeValue("Settings", "CloseNow", "True");
    EXPECT_EQ(s.readValue("Settings", "closenow", "False"), "False");
}

TYPED_TEST(StoreContract, StarAndEmptyNameAreTheKeysDefaultValue)
{
    KeyValueStore& s = *this->store;
    s.writeValue("Settings/Sensor1", "*", "star");
    EXPECT_EQ(s.readValue("Settings/Sensor1", "", "none"), "star");
    s.writeValue("Settings/Sensor1", "", "again");
    EXPECT_EQ(s.readValue("Settings/Sensor1", "*", "none"), "again");
}

TYPED_TEST(StoreContract, WritingMakesTheKeysAboveAndListsOnlyDirectOnes)
{
    KeyValueStore& s = *this->store;
    s.writeValue("Settings/Sensor2/Node1", "Name", "a");
    s.writeValue("Settings/Sensor10", "Name", "b");
    s.writeValue("Settings/Sensor1", "Name", "c");
    s.writeValue("Settings", "Sensors", "3");
    EXPECT_EQ(s.subKeys("Settings"), QStringList({"Sensor1", "Sensor10", "Sensor2"}));
    EXPECT_EQ(s.subKeys("Settings/Sensor2"), QStringList({"Node1"}));
    EXPECT_TRUE(s.subKeys("Settings/Sensor1").isEmpty());
    EXPECT_TRUE(s.subKeys("Settings/Nothing").isEmpty());
    // values() is the key's own values, never those of its sub-keys.
    const auto vals = s.values("Settings");
    ASSERT_EQ(vals.size(), 1);
    EXPECT_EQ(vals[0], qMakePair(QString("Sensors"), QString("3")));
    // A trailing or doubled '/' names the same key.
    EXPECT_EQ(s.readValue("Settings//Sensor1/", "Name", ""), "c");
}

TYPED_TEST(StoreContract, DeletingAKeyTakesItsSubKeysAndNothingBeside)
{
    KeyValueStore& s = *this->store;
    s.writeValue("Settings/Sensor1", "Name", "one");
    s.writeValue("Settings/Sensor1/Node1", "Name", "n");
    s.writeValue("Settings/Sensor10", "Name", "ten");
    s.writeValue("Settings", "Sensor1", "a value beside the key");
    EXPECT_TRUE(s.deleteValue("Settings/Sensor1", ""));
    EXPECT_EQ(s.readValue("Settings/Sensor1", "Name", "gone"), "gone");
    EXPECT_EQ(s.readValue("Settings/Sensor1/Node1", "Name", "gone"), "gone");
    EXPECT_EQ(s.readValue("Settings/Sensor10", "Name", "gone"), "ten");
    EXPECT_EQ(s.readValue("Settings", "Sensor1", "gone"), "a value beside the key");
    EXPECT_EQ(s.subKeys("Settings"), QStringList({"Sensor10"}));
    EXPECT_FALSE(s.deleteValue("Settings/Sensor1", ""));
}

TYPED_TEST(StoreContract, DeletingAValueKeepsASubKeyOfTheSameName)
{
    KeyValueStore& s = *this->store;
    s.writeValue("Settings", "Sensor1", "value");
    s.writeValue("Settings/Sensor1", "Name", "graph");
    EXPECT_TRUE(s.deleteValue("Settings", "Sensor1"));
    EXPECT_EQ(s.readValue("Settings", "Sensor1", "gone"), "gone");
    EXPECT_EQ(s.readValue("Settings/Sensor1", "Name", "gone"), "graph");
    EXPECT_FALSE(s.deleteValue("Settings", "CloseNow"));  // nothing there
}

TYPED_TEST(StoreContract, TopLevelKeyIsNeverDeleted)
{
    KeyValueStore& s = *this->store;
    s.writeValue("Settings", "Sensors", "1");
    s.writeValue("Settings/Sensor1", "Name", "kept");
    EXPECT_FALSE(s.deleteValue("Settings", ""));
    EXPECT_EQ(s.lastError(), RefusedDeleteText);
    EXPECT_EQ(s.readValue("Settings", "Sensors", ""), "1");
    EXPECT_EQ(s.readValue("Settings/Sensor1", "Name", ""), "kept");
    // A single value directly under it may go (CloseNow at start).
    s.writeValue("Settings", "CloseNow", "True");
    EXPECT_TRUE(s.deleteValue("Settings", "CloseNow"));
}

}  // namespace
