// The vCard writer: long lines folded within 75 octets and never inside a character, special
// characters escaped; what it writes reads back unchanged. Reading is pinned by golden/.
#include "backends/vdir/VCard.h"
#include <gtest/gtest.h>

using namespace steplets::vdir;

TEST(VCardCodec, WrittenLinesAreFoldedAndEscapedAndReadBackUnchanged)
{
    VCard card;
    const QString note = QString::fromUtf8("Überweisung für Ärztin ").repeated(12) + QStringLiteral("a,b;c\\d\nsecond line");
    card.addText(QStringLiteral("NOTE"), note);
    const QByteArray bytes = card.serialize();
    for (const QByteArray& line : bytes.split('\n')) {
        EXPECT_LE(line.size(), 76);                   // 75 octets plus the CR
        EXPECT_FALSE(QString::fromUtf8(line).contains(QChar::ReplacementCharacter)) << "folded inside a character";
    }
    QString error;
    const auto back = VCard::parse(bytes, &error);
    ASSERT_TRUE(back.has_value()) << error.toStdString();
    EXPECT_EQ(back->first(QStringLiteral("NOTE"))->text(), note);
}
