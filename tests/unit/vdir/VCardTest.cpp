// The vCard codec: folding, escaping, parameters, groups, and the files it refuses.
#include "backends/vdir/VCard.h"
#include <gtest/gtest.h>

using namespace steplets::vdir;

namespace {

VCard parsed(const QByteArray& text)
{
    QString error;
    const auto card = VCard::parse(text, &error);
    EXPECT_TRUE(card.has_value()) << error.toStdString();
    return card.value_or(VCard{});
}

} // namespace

TEST(VCardCodec, LongLinesAreFoldedWithinSeventyFiveOctetsAndReadBack)
{
    VCard card;
    const QString note = QString::fromUtf8("Überweisung für Ärztin ").repeated(12);
    card.addText(QStringLiteral("NOTE"), note);
    const QByteArray bytes = card.serialize();
    for (const QByteArray& line : bytes.split('\n')) {
        EXPECT_LE(line.size(), 76);                   // 75 octets plus the CR
        EXPECT_FALSE(QString::fromUtf8(line).contains(QChar::ReplacementCharacter)) << "folded inside a character";
    }
    EXPECT_EQ(parsed(bytes).first(QStringLiteral("NOTE"))->text(), note);
}

TEST(VCardCodec, SpecialCharactersSurviveEscaping)
{
    const QString text = QStringLiteral("a,b;c\\d\nsecond line");
    VCard card;
    card.addText(QStringLiteral("NOTE"), text);
    card.add(QStringLiteral("N"), VCardLine::joinComponents({QStringLiteral("O;Neill"), QStringLiteral("Grace, Jr")}));
    const VCard back = parsed(card.serialize());
    EXPECT_EQ(back.first(QStringLiteral("NOTE"))->text(), text);
    EXPECT_EQ(back.first(QStringLiteral("N"))->components(), (QStringList{QStringLiteral("O;Neill"), QStringLiteral("Grace, Jr")}));
}

TEST(VCardCodec, ParametersGroupsAndOldStyleTypesAreRead)
{
    const VCard card = parsed("BEGIN:VCARD\r\nVERSION:3.0\r\nitem1.EMAIL;TYPE=INTERNET,pref:a@b.example\r\n"
                              "TEL;WORK;FAX:+1 555\r\nADR;TYPE=work;LABEL=\"1 Main St\\nTown, ST\":;;1 Main St;Town;ST;;\r\n"
                              "END:VCARD\r\n");
    const VCardLine* email = card.first(QStringLiteral("EMAIL"));
    ASSERT_NE(email, nullptr);
    EXPECT_EQ(email->group, QStringLiteral("item1"));
    EXPECT_TRUE(email->hasType(QStringLiteral("pref")));
    EXPECT_TRUE(card.first(QStringLiteral("TEL"), QStringLiteral("fax")) != nullptr);
    EXPECT_TRUE(card.first(QStringLiteral("TEL"))->hasType(QStringLiteral("work")));
    const VCardLine* adr = card.first(QStringLiteral("ADR"));
    EXPECT_EQ(adr->paramValues(QStringLiteral("LABEL")).value(0), QStringLiteral("1 Main St\\nTown, ST"));
    EXPECT_EQ(adr->components().value(3), QStringLiteral("Town"));
    EXPECT_EQ(card.version(), QStringLiteral("3.0"));
}

TEST(VCardCodec, FoldedInputWithTabsAndBareLineFeedsIsUnfolded)
{
    const VCard card = parsed("BEGIN:VCARD\nVERSION:4.0\nFN:Ada\n  Byrne\nNOTE:one\n\ttwo\nEND:VCARD\n");
    EXPECT_EQ(card.first(QStringLiteral("FN"))->text(), QStringLiteral("Ada Byrne"));
    EXPECT_EQ(card.first(QStringLiteral("NOTE"))->text(), QStringLiteral("onetwo"));
}

TEST(VCardCodec, FaultyFilesAreRefusedWithAReason)
{
    const QList<QPair<QByteArray, QString>> cases = {
        {"", QStringLiteral("no vCard")},
        {"BEGIN:VCARD\r\nFN:Ada\r\n", QStringLiteral("truncated")},
        {"BEGIN:VCARD\r\nFN:A\r\nEND:VCARD\r\nBEGIN:VCARD\r\nFN:B\r\nEND:VCARD\r\n", QStringLiteral("more than one")},
        {"BEGIN:VCARD\r\nthis line has no colon\r\nEND:VCARD\r\n", QStringLiteral("malformed line")},
        {"hello\r\n", QStringLiteral("outside")},
    };
    for (const auto& [text, reason] : cases) {
        QString error;
        EXPECT_FALSE(VCard::parse(text, &error).has_value()) << text.constData();
        EXPECT_TRUE(error.contains(reason)) << error.toStdString();
    }
}

// vCard 2.1 values as other programs write them: decoded to text, or the card refused with the
// line that cannot be.
TEST(VCardCodec, OldStyleValuesAreDecodedAndUndecodableOnesRefused)
{
    struct Case { const char* what; QByteArray line; QString text; const char* error; };
    const Case cases[] = {
        {"quoted-printable", "FN;ENCODING=QUOTED-PRINTABLE;CHARSET=UTF-8:Ada By=C3=A9rne", QString::fromUtf8("Ada Byérne"), nullptr},
        {"soft line breaks", "FN;QUOTED-PRINTABLE:Ada =\r\nBy=C3=\r\n=A9rne", QString::fromUtf8("Ada Byérne"), nullptr},
        {"encoded line break", "NOTE;ENCODING=QUOTED-PRINTABLE:one=0D=0Atwo", QStringLiteral("one\ntwo"), nullptr},
        {"latin-1", "FN;CHARSET=ISO-8859-1:Ada By\xe9rne", QString::fromUtf8("Ada Byérne"), nullptr},
        {"windows-1252", "FN;CHARSET=windows-1252:\x93" "By\xe9rne\x94", QString::fromUtf8("“Byérne”"), nullptr},
        {"fold inside a character", "FN:Ada By\xc3\r\n \xa9rne", QString::fromUtf8("Ada Byérne"), nullptr},
        {"invalid bytes", "FN:Ada By\xff\xferne", {}, "the value of FN in line 3 is not valid UTF-8"},
        {"invalid after decoding", "FN;ENCODING=QUOTED-PRINTABLE:By=E9rne", {}, "the value of FN in line 3 is not valid UTF-8"},
        {"unknown charset", "FN;CHARSET=KOI8-R:\xe1\xe4\xe1", {}, "the value of FN in line 3 is in the charset KOI8-R, which is not supported"},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.what);
        const QByteArray file = "BEGIN:VCARD\r\nVERSION:2.1\r\n" + c.line + "\r\nEND:VCARD\r\n";
        QString error;
        const auto card = VCard::parse(file, &error);
        if (c.error) {
            EXPECT_FALSE(card.has_value());
            EXPECT_EQ(error, QLatin1String(c.error));
            continue;
        }
        ASSERT_TRUE(card.has_value()) << error.toStdString();
        ASSERT_EQ(card->lines.size(), 2);
        const VCardLine& line = card->lines[1];
        EXPECT_EQ(line.text(), c.text);
        EXPECT_TRUE(line.params.isEmpty()) << "the decoded value is plain text";
        EXPECT_EQ(VCard::parse(card->serialize(), &error)->lines[1].text(), c.text) << "and is written as such";
    }
}
