// Settings as JSON: the written document, round trips of every kind of value, and the
// errors of bad documents.
#include "foundation/SettingsSamples.h"

#include <qv/qt/QLJsonForm.h>

#include <QJsonArray>
#include <QJsonObject>

#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>

using namespace qv;
using namespace qvtest;

namespace {

QJsonObject Saved(const TSampleSettings& ASettings)
{
    return QLSaveToJsonDocument(ASettings).object();
}

// Loads AJson and expects an error at APath whose message holds AText; the object must
// be left as it was.
void ExpectJsonFailure(TSampleSettings& ASettings, const char* AJson, const std::string& APath,
                       const std::string& AText)
{
    const QByteArray Before = QLSaveToJson(ASettings, QJsonDocument::Compact);
    try {
        QLLoadFromJson(ASettings, QByteArray(AJson));
        ADD_FAILURE() << "no error for " << AJson;
    } catch (const EQLPropertyError& E) {
        const std::string Message = E.what();
        EXPECT_EQ(E.GetPath(), APath) << Message;
        EXPECT_NE(Message.find(AText), std::string::npos) << Message;
    }
    EXPECT_EQ(QLSaveToJson(ASettings, QJsonDocument::Compact), Before) << AJson;
}

} // namespace

TEST(JsonForm, DocumentHoldsChangedValuesOnlyInReadableForms)
{
    TSampleSettings Settings;
    EXPECT_EQ(Saved(Settings).keys(), QStringList{"AxisIndex_"});

    FillSample(Settings);
    const QJsonObject Doc = Saved(Settings);
    EXPECT_EQ(Doc.value("Back").toString(), "#80112233");
    EXPECT_EQ(Doc.value("Shape").toString(), "ssTriangle");
    EXPECT_EQ(Doc.value("Flags").toArray(), (QJsonArray{"sfLabels", "sfTicks"}));
    EXPECT_EQ(Doc.value("Mask").toInteger(), 0xDEADBEEFll);
    EXPECT_EQ(Doc.value("Title").toString(), QString::fromUtf8("Noise \xC2\xB5V"));
    const QJsonArray Items = Doc.value("Items").toArray();
    ASSERT_EQ(Items.size(), 2);
    EXPECT_EQ(Items.at(1).toObject().value("Font").toObject().value("Name").toString(), "Courier");
    EXPECT_FALSE(Items.at(1).toObject().contains("Weight"));
}

TEST(JsonForm, RoundTripRestoresEveryValueIncludingExtremesAndNonFiniteReals)
{
    TSampleSettings Source;
    FillSample(Source);
    Source.SetBig(std::numeric_limits<int64_t>::max() - 1); // not exact as a double
    Source.SetLevel(0.1 + 0.2);                             // needs every digit
    const QByteArray Json = QLSaveToJson(Source);
    TSampleSettings Target(QLMakeLock(), 0xFF000001);
    QLLoadFromJson(Target, Json);
    EXPECT_EQ(QLSaveObject(Target), QLSaveObject(Source)) << Json.toStdString();
    EXPECT_EQ(Target.GetBig(), std::numeric_limits<int64_t>::max() - 1);
    EXPECT_EQ(Target.GetLevel(), 0.1 + 0.2);
    EXPECT_EQ(Target.GetTitle(), Source.GetTitle());

    Source.SetBig(std::numeric_limits<int64_t>::min());
    Source.SetSmall(-32768);
    Source.SetMask(0xFFFFFFFFu);
    QLLoadFromJson(Target, QLSaveToJson(Source, QJsonDocument::Compact));
    EXPECT_EQ(Target.GetBig(), std::numeric_limits<int64_t>::min());
    EXPECT_EQ(Target.GetSmall(), -32768);
    EXPECT_EQ(Target.GetMask(), 0xFFFFFFFFu);

    // JSON has no NaN or infinity: they must still come back, at the root and in an item.
    for (double Value : {std::numeric_limits<double>::quiet_NaN(), -std::numeric_limits<double>::infinity()}) {
        Source.SetLevel(Value);
        Source.GetItems()->GetItem(0)->GetMarker()->SetOffset(Value);
        QLLoadFromJson(Target, QLSaveToJson(Source));
        for (double Got : {Target.GetLevel(), Target.GetItems()->GetItem(0)->GetMarker()->GetOffset()})
            EXPECT_TRUE(Got == Value || (std::isnan(Value) && std::isnan(Got))) << Got;
    }

    // The empty set is not the default here, so it is written, and read back.
    QLLoadFromJson(Target, R"({"Items": [], "Flags": []})");
    EXPECT_EQ(Target.GetItems()->GetCount(), 0);
    TSampleSettings Copy;
    QLLoadFromJson(Copy, QLSaveToJson(Target));
    EXPECT_EQ(Copy.GetFlags(), 0u);
}

// Errors of the document itself, and values JSON gives in forms of its own; errors of the
// values' meaning are common to every format.
TEST(JsonForm, BadDocumentsFailWithThePathAndChangeNothing)
{
    TSampleSettings Settings;
    FillSample(Settings);
    ExpectJsonFailure(Settings, R"({"Items": [{"Name": "a"}, {"Font": {"Size": "big"}}]})", "Items[1].Font.Size",
                      "\"big\"");
    ExpectJsonFailure(Settings, R"({"Items": [{}, {"Font": {"Size": 1e12}}]})", "Items[1].Font.Size", "1000000000000");
    ExpectJsonFailure(Settings, R"({"Percent": 5, "Items": [{}, {"Font": {"Size": null}}]})", "Items[1].Font.Size",
                      "null");
    ExpectJsonFailure(Settings, R"({"Enabled": "yes"})", "Enabled", "\"yes\"");
    ExpectJsonFailure(Settings, R"({"Flags": ["sfGrid", 3]})", "Flags", "list");
    ExpectJsonFailure(Settings, R"({"Items": ["a"]})", "Items", "list");
    ExpectJsonFailure(Settings, R"({"Gain": 1e400})", "TSampleSettings", "malformed");
    ExpectJsonFailure(Settings, R"({"Percent": 5,)", "TSampleSettings", "malformed");
    ExpectJsonFailure(Settings, "", "TSampleSettings", "malformed");
    ExpectJsonFailure(Settings, "[1, 2]", "TSampleSettings", "object");
}
