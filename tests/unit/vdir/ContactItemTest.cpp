// Contact items written through the store; what they read from a card is pinned by golden/.
#include "VdirFixture.h"
#include "backends/vdir/ContactCard.h"
#include "backends/vdir/DemoContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

using ContactItems = VdirFixture;

std::shared_ptr<ol::ContactItem> contactIn(ol::NameSpace& ns, const QString& id)
{
    return ol::asContact(ns.GetItemFromID(id, QStringLiteral("store")));
}

} // namespace

TEST_F(ContactItems, EveryWritablePropertyRoundTripsThroughTheFile)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    auto c = contactIn(*ns, QStringLiteral("c-ada"));
    QMap<QString, Value> written;
    int n = 0;
    for (const QString& name : vdir::contactFillInProperties()) {
        if (vdir::isComputedContactProperty(name))
            continue;
        Value v;
        if (name == QLatin1String("Birthday"))
            v = Value(Date::fromParts(1985, 4, 12));
        else if (name == QLatin1String("Importance"))
            v = Value(2);
        else
            v = Value(QStringLiteral("%1 value %2, with; marks").arg(name).arg(++n));
        c->set(name, v);
        written.insert(name, v);
    }
    c->Save();
    open();
    auto back = contactIn(*ns, QStringLiteral("c-ada"));
    for (auto it = written.constBegin(); it != written.constEnd(); ++it)
        EXPECT_EQ(back->get(it.key()), it.value()) << it.key().toStdString() << " read " << back->get(it.key()).debugText().toStdString();
}

TEST_F(ContactItems, ComputedNamesAreReadOnlyUnknownOnesAreFailuresAndAStoredFileAsWins)
{
    vdir::writeDemoContacts(tmp.file(QStringLiteral("contacts")));
    auto c = contactIn(*ns, QStringLiteral("c-ada"));
    EXPECT_TRUE(failure([&] { c->set(QStringLiteral("LastFirstNoSpace"), Value("x")); }).description().contains(QStringLiteral("read-only")));
    EXPECT_EQ(failure([&] { c->get(QStringLiteral("Shoe Size")); }).number(), vdir::fail::NoSuchProperty);
    c->set(QStringLiteral("FileAs"), Value("Accounts: Byrne"));
    c->Save();
    open();
    EXPECT_EQ(contactIn(*ns, QStringLiteral("c-ada"))->FileAs(), QStringLiteral("Accounts: Byrne"));
}
