#include <VexaJson.h>
#include <VexaPlayListAddPosition.h>
#include <VexaPlayListItem.h>
#include <VexaPlayListPlAddItems.h>
#include <VexaPlayListPlMoveItems.h>
#include <VexaPlayListPlRepeatMode.h>
#include <VexaPlayListPlSetName.h>
#include <VexaRoles.h>
#include <VexaRowsRoles.h>
#include <VexaTrackFields.h>
#include <VexaValue.h>

#include <gtest/gtest.h>

#include <limits>

namespace {

QVariantHash parseObject(const char* json)
{
    QString error;
    const QVariant v = VexaJson::parse(json, &error);
    EXPECT_TRUE(error.isEmpty()) << error.toStdString();
    return v.toHash();
}

} // namespace

TEST(VexaValue, TypedValuesHaveTheirJsonForm)
{
    VexaValue mode;
    mode.setPlayerPlayMode(VexaPlayerPlayMode::ShuffleRepeatAll);
    EXPECT_EQ(mode.value("playerPlayMode").toString(), "shuffleRepeatAll");
    EXPECT_EQ(VexaValue(parseObject(R"({"type":"playerPlayMode","playerPlayMode":3})")).playerPlayMode(),
              VexaPlayerPlayMode::ShuffleRepeatOne);
    const VexaValue target(parseObject(R"({"type":"powerTarget","powerTarget":{"target":2}})"));
    EXPECT_TRUE(target.isValid());
    EXPECT_EQ(target.powerTarget().target(), 2);
}

TEST(VexaValue, ValidationRefusesMismatchedOrUnknownKinds)
{
    EXPECT_TRUE(VexaValue(parseObject(R"({"type":"bool_","bool_":false})")).isValid());
    EXPECT_TRUE(VexaValue(parseObject(R"({"type":"string_","string_":""})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"i32_","i32_":"ten"})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"i32_","i32_":1.5})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"i32_","i32_":4294967296})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"bool_","bool_":1})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"i32_"})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"blob","blob":1})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"playerPlayMode","playerPlayMode":"sideways"})")).isValid());
    EXPECT_FALSE(VexaValue(parseObject(R"({"type":"powerTarget","powerTarget":2})")).isValid());
}

TEST(VexaRoles, RoundTripThroughJsonKeepsUnknownKeysAndReadsEnumsByNameOrNumber)
{
    const char* json = R"({"title":"Song","type":"audio","containerType":100,"path":"library:/t?id=a%26b",
        "value":{"type":"i32_","i32_":4},"mediaData":{"metaData":{"artist":"A","allowSeekTime":false},
        "resources":[{"uri":"http://x/1.mp3","duration":200}]},"vendorKey":[1,2]})";
    const VexaRoles roles(parseObject(json));
    EXPECT_EQ(roles.type(), VexaRolesType::Audio);
    EXPECT_EQ(roles.containerType(), VexaRolesContainerType::ContextMenu);
    EXPECT_EQ(roles.path().param("id"), "a&b");
    EXPECT_EQ(roles.value().i32(), 4);
    EXPECT_EQ(roles.mediaData().metaData().artist(), "A");
    EXPECT_TRUE(roles.mediaData().metaData().contains(VexaMetaData::AllowSeekTime()));
    EXPECT_FALSE(roles.mediaData().metaData().allowSeekTime());
    EXPECT_EQ(roles.mediaData().resources().first().duration(), 200);

    QString error;
    const VexaRoles again(VexaJson::parse(VexaJson::toJson(roles.toVariant()), &error).toHash());
    EXPECT_EQ(again, roles);
    EXPECT_EQ(again.value("vendorKey").toList().size(), 2);

    VexaRoles built;
    built.setType(VexaRolesType::Separator);
    EXPECT_EQ(built.value("type").toString(), "separator");
    EXPECT_EQ(VexaRoles().type(), VexaRolesType::None);
}

TEST(VexaJson, ParsesScalarsAndReportsErrors)
{
    QString error;
    EXPECT_EQ(VexaJson::parse("42", &error).toInt(), 42);
    EXPECT_EQ(VexaJson::parse("\"x\"", &error).toString(), "x");
    EXPECT_TRUE(error.isEmpty());
    EXPECT_TRUE(VexaJson::parse("null", &error).isValid());
    EXPECT_FALSE(VexaJson::parse("{\"a\":", &error).isValid());
    EXPECT_FALSE(error.isEmpty());
    EXPECT_FALSE(VexaJson::parse("1],[2", &error).isValid());
    EXPECT_FALSE(VexaJson::parse("", &error).isValid());
    EXPECT_EQ(VexaJson::toJson(QVariant::fromValue(nullptr)), QByteArray("null"));

    // Text that is not strict JSON is refused whole.
    for (const QByteArray& bad : {QByteArray("[1,]"), QByteArray("{\"a\" 1}"), QByteArray("01"), QByteArray("1."),
                                 QByteArray("\"\\x\""), QByteArray("\"\xc3\x28\""), QByteArray("\"\xed\xa0\x80\""),
                                 QByteArray("tru"), QByteArray(300, '[') + QByteArray(300, ']')}) {
        EXPECT_FALSE(VexaJson::parse(bad, &error).isValid()) << bad.constData();
        EXPECT_FALSE(error.isEmpty()) << bad.constData();
    }
    // Escapes, a NUL, a pair of surrogates and big numbers read exactly and
    // write back the same; members are written in order.
    const QByteArray text = R"({"b":[1.5,-2,4294967297,true,null],"a":"q\"\\\n\u0000\ud83d\ude00é"})";
    const QVariant value = VexaJson::parse(text, &error);
    ASSERT_TRUE(error.isEmpty()) << error.toStdString();
    EXPECT_EQ(value.toHash().value("a").toString(), QString::fromUtf8("q\"\\\n") + QChar(0) + QString::fromUtf8("😀é"));
    EXPECT_EQ(value.toHash().value("b").toList().value(2).toDouble(), 4294967297.0);
    EXPECT_EQ(VexaJson::toJson(value), QByteArray(R"({"a":"q\"\\\n\u0000😀é","b":[1.5,-2,4294967297,true,null]})"));

    // Appended text follows what was there; a long string that turns out not
    // to be plain ASCII at its end is written whole, escapes and all.
    const QString longText = QString(1000, QLatin1Char('x')) + QString::fromUtf8("é\"");
    QByteArray page = "[0,";
    VexaJson::appendJson(QVariantList{longText, std::numeric_limits<qint64>::min()}, page);
    EXPECT_EQ(page, "[0,[\"" + QByteArray(1000, 'x') + "é\\\"\",-9223372036854775808]");
}

TEST(VexaCommandRecord, NumbersReadAliasFromJsonNumbersAndDecimalText)
{
    const VexaPlayListPlSetName rename(parseObject(R"({"plid":"7","name":"Party"})"));
    EXPECT_EQ(rename.plid(), 7);
    EXPECT_EQ(rename.name(), "Party");
    EXPECT_EQ(VexaPlayListPlSetName(parseObject(R"({"plid":7.0})")).plid(), 7);
    // A missing id reads as -1, the id no playlist has.
    EXPECT_EQ(VexaPlayListPlSetName(parseObject("{}")).plid(), -1);

    bool ok = false;
    const VexaPlayListPlMoveItems move(parseObject(R"({"plid":1,"items":[3,"4"],"to":"0"})"));
    EXPECT_EQ(move.items(&ok), QList<int>({3, 4}));
    EXPECT_TRUE(ok);
    EXPECT_EQ(move.to(), 0);
    VexaPlayListPlMoveItems(parseObject(R"({"items":[3,"x"]})")).items(&ok);
    EXPECT_FALSE(ok);
    VexaPlayListPlMoveItems(parseObject(R"({"items":"3"})")).items(&ok);
    EXPECT_FALSE(ok);

    EXPECT_EQ(VexaPlayListPlRepeatMode::fromVariant(VexaPlayListPlAddItems(parseObject(R"({"mode":"2"})")).mode()),
              VexaPlayListPlRepeatMode::All);
    EXPECT_EQ(VexaPlayListAddPosition::fromVariant(VexaPlayListPlAddItems(parseObject(R"({"mode":"next"})")).mode()),
              VexaPlayListAddPosition::Next);
    bool known = true;
    VexaPlayListAddPosition::fromString("sideways", &known);
    EXPECT_FALSE(known);
    EXPECT_EQ(VexaPlayListAddPosition::toString(VexaPlayListAddPosition::Now), "now");
    EXPECT_EQ(VexaPlayListAddPosition::toString(7), "7");

    VexaPlayListPlAddItems add;
    add.setItems({CMPath("library:/a?x=1"), CMPath("b:/c")});
    EXPECT_EQ(VexaPlayListPlAddItems(add.hash()).items(), add.items());
}

TEST(VexaPlayListItem, FillsMissingFieldsFromItsRoles)
{
    const QVariantHash hash = parseObject(R"({"vexaRoles":"{\"title\":\"T\",\"icon\":\"http://art\",\"path\":\"lib:/t/1\",
        \"mediaData\":{\"metaData\":{\"artist\":\"Ar\",\"album\":\"Al\",\"genre\":\"G\",\"serviceId\":\"S\"},
        \"resources\":[{\"uri\":\"http://x/1.mp3\",\"duration\":\"215\"}]}}"})");
    const VexaPlayListItem item = VexaPlayListItem::fromHash(hash);
    EXPECT_EQ(item.title(), "T");
    EXPECT_EQ(item.artist(), "Ar");
    EXPECT_EQ(item.album(), "Al");
    EXPECT_EQ(item.genre(), "G");
    EXPECT_EQ(item.serviceId(), "S");
    EXPECT_EQ(item.artworkUrl(), "http://art");
    EXPECT_EQ(item.durationSeconds(), 215);
    EXPECT_EQ(item.url(), "http://x/1.mp3");
    EXPECT_EQ(item.uid(), -1);

    // Given fields win; without a resource the url falls back to the roles' path.
    const VexaPlayListItem own = VexaPlayListItem::fromHash(
        parseObject(R"({"title":"Mine","uid":"5","vexaRoles":"{\"title\":\"T\",\"path\":\"lib:/t/1\"}"})"));
    EXPECT_EQ(own.title(), "Mine");
    EXPECT_EQ(own.uid(), 5);
    EXPECT_EQ(own.url(), "lib:/t/1");

    // Broken roles text fills nothing and does not fail.
    const VexaPlayListItem broken = VexaPlayListItem::fromHash(parseObject(R"({"vexaRoles":"{not json"})"));
    EXPECT_TRUE(broken.title().isEmpty());
    EXPECT_EQ(VexaPlayListItem::fromHash(broken.toHash()), broken);
}

// Track fields are read from the roles' text in one pass; whatever the text,
// they must be what the JSON reader and the roles' accessors make of it.
TEST(VexaTrackFields, ReadsEveryTextAsTheRolesDo)
{
    const QString usual = QStringLiteral(R"( { "title" : "Café – 7", "type":"audio", "icon":"http://a/1.jpg", "extra": [1, -2.5, true, false, null, {"x": [[]]}, "s"],
        "mediaData": {"metaData": {"artist": "Ar", "album": "Al", "genre": "G", "serviceId": "lib", "other": {}},
                      "resources": [{"uri": "file:///m/1.flac", "duration": 215, "mimeType": "audio/flac"}, {"uri": "second"}]}, "path": "lib:/t/1"} )")
                                .replace(QStringLiteral("\u00e9"), QString(QChar(0xe9)))
                                .replace(QStringLiteral("\u2013"), QString(QChar(0x2013)));
    const VexaTrackFields fields = VexaTrackFields::read(usual);
    EXPECT_EQ(fields.title, QString::fromUtf8("Café – 7"));
    EXPECT_TRUE(fields.audio);
    EXPECT_EQ(fields.album, "Al");
    EXPECT_EQ(fields.uri, "file:///m/1.flac");
    EXPECT_EQ(fields.duration, 215);
    EXPECT_EQ(fields.path, "lib:/t/1");

    const QStringList texts = {
        usual,
        R"({"title": "12" Mix", "type": "audio", "mediaData": {"resources": [{"uri": "a\/b"}]}})",
        R"({"title": "A", "title": "B", "type": "container"})",
        R"({"title": 7, "type": 3, "icon": null})",
        R"({"type": "nonsense", "mediaData": null})",
        R"({"mediaData": {"metaData": {"prePlayPath": "x:/pre", "artist": ["a"]}, "resources": []}})",
        R"({"mediaData": {"resources": ["file:///x", {"uri": "y"}]}})",
        R"({"mediaData": {"resources": [{"uri": "y", "duration": 1.5}]}})",
        R"({"mediaData": {"resources": [{"uri": "y", "duration": 2e2}]}})",
        R"({"mediaData": {"resources": [{"uri": "y", "duration": 99999999999}]}})",
        R"({"mediaData": {"resources": [{"uri": "y", "duration": -0}]}})",
        R"({"mediaData": {"metaData": {"genre": "a"}, "metaData": {"album": "b"}}})",
        R"({"title": "escaped name"})",
        R"({"title": "trailing"} x)",
        R"({"title": "unterminated)",
        R"({"title": "t", "n": 01})",
        R"({"title": "t", "n": +1})",
        R"([{"title": "in an array"}])",
        R"("just text")",
        R"({"deep": [[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[[1]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]]], "title": "t"})",
        QStringLiteral("{\"title\": \"lone ") + QChar(0xd800) + QStringLiteral("\"}"),
        "",
    };
    for (const QString& text : texts)
        EXPECT_EQ(VexaTrackFields::read(text), VexaTrackFields::readThroughRoles(text)) << text.toStdString();
}
