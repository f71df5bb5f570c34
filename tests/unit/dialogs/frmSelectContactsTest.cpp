// frmSelectContacts on the scripted host and a real link database: which rows are offered under
// which header, when "C&ontinue" can be used, and what each way out leaves in the session.
#include "ContactStoreFixture.h"
#include "dialogs/frmSelectContacts.h"

using namespace steplets;
using namespace steplets::test;

namespace {

// The chooser's combo as the dialog reads it: a blank row first, then names with their IDs.
struct Rows {
    QStringList texts;
    QList<qint32> ids;
    ContactListReader reader() const
    {
        return {[this] { return static_cast<int>(texts.size()); }, [this](int i) { return texts.at(i); },
                [this](int i) { return ids.at(i); }};
    }
};

class SelectContacts : public ContactStoreFixture {
protected:
    SelectContacts()
    {
        addContact(1, QStringLiteral("c-ada"), QStringLiteral("Ada Byrne"));
        addContact(2, QStringLiteral("c-ben"), QStringLiteral("Benjamin Okafor"));
        addContact(3, QStringLiteral("c-clara"), QStringLiteral("Clara Lindqvist"));
        addContact(4, QStringLiteral("c-old"), QStringLiteral("Olive Left"), false);
        openContacts();
        combo.texts = {QString(), QStringLiteral("Ada Byrne"), QStringLiteral("Benjamin Okafor"),
                       QStringLiteral("Clara Lindqvist")};
        combo.ids = {9999999, 1, 2, 3};
    }

    // Calls SelectContactDialog with `shown` while `steps` play; the form stays for inspection.
    frmSelectContacts& play(int mode, const QString& shown, const char* steps)
    {
        session().iContactMode = Int16(static_cast<std::int16_t>(mode));
        form.reset();   // before the host it lives on
        auto& h = hostFor(steps);
        form = std::make_unique<frmSelectContacts>(h, combo.reader());
        QString contact = shown;
        form->SelectContactDialog(contact);
        EXPECT_TRUE(h.script().atEnd()) << "every step was played";
        return *form;
    }
    QStringList offered() const
    {
        QStringList out;
        for (int i = 0; i < form->lbContacts.ListCount(); ++i) out << form->lbContacts.List(i);
        return out;
    }
    QStringList selection() const
    {
        QStringList out;
        const auto& a = session().aSelectedContacts;
        for (long i = a.lbound(); i <= a.ubound(); ++i) out << a[i];
        return out;
    }

    Rows combo;
    std::unique_ptr<frmSelectContacts> form;
};

const char* kCancel = R"([{"form": "frmSelectContacts", "click": "CancelButton"}])";

TEST_F(SelectContacts, LinkModeLeavesOutExactlyTheShownContactAndDropsBlankRows)
{
    play(1, QStringLiteral("Ada Byrne"), kCancel);
    EXPECT_EQ(offered(), (QStringList{QStringLiteral("Benjamin Okafor"), QStringLiteral("Clara Lindqvist")}));
    EXPECT_EQ(form->lbContacts.ItemData(0), 2);
    EXPECT_EQ(form->hdrText.Caption(),
              QStringLiteral("Select the contacts to link to the task(s) you are processing.  "
                             "A separate task will be processed for each contact selected."));

    // The comparison is exact: another spelling of the name is offered.
    play(1, QStringLiteral("ada byrne"), kCancel);
    EXPECT_EQ(offered().size(), 3);
}

TEST_F(SelectContacts, SeparateModeOffersEveryoneAndOtherModesHaveNoHeader)
{
    play(2, QStringLiteral("Ada Byrne"), kCancel);
    EXPECT_EQ(offered().size(), 3);
    EXPECT_EQ(offered().first(), QStringLiteral("Ada Byrne"));
    EXPECT_EQ(form->hdrText.Caption(),
              QStringLiteral("Select the contacts to link to the task(s) you are processing.  "
                             "Each contact selected below will be linked to each task processed."));

    play(0, QStringLiteral("Ada Byrne"), kCancel);
    EXPECT_EQ(offered().size(), 3);
    EXPECT_TRUE(form->hdrText.Caption().isEmpty());
}

TEST_F(SelectContacts, ContinueFollowsTheSelection)
{
    play(2, QString(), R"([
        {"form": "frmSelectContacts", "snapshot": true},
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Clara Lindqvist"},
        {"form": "frmSelectContacts", "snapshot": true},
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Clara Lindqvist", "selected": false},
        {"form": "frmSelectContacts", "snapshot": true},
        {"form": "frmSelectContacts", "click": "CancelButton"}])");
    std::vector<bool> enabled;
    for (const auto& e : host->events()) {
        const QJsonObject snap = e.toObject().value(QStringLiteral("snapshot")).toObject();
        if (!snap.isEmpty())
            enabled.push_back(snap[QStringLiteral("controls")][QStringLiteral("OKButton")][QStringLiteral("enabled")].toBool());
    }
    EXPECT_EQ(enabled, (std::vector<bool>{false, true, false}));
}

TEST_F(SelectContacts, ContinueGivesTheEntryIDsInListOrderAndLeavesTheRecordsetUnfiltered)
{
    play(2, QString(), R"([
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Clara Lindqvist"},
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Ada Byrne"},
        {"form": "frmSelectContacts", "click": "OKButton"}])");
    EXPECT_EQ(session().aSelectedContacts.lbound(), 1);
    EXPECT_EQ(selection(), (QStringList{QStringLiteral("c-ada"), QStringLiteral("c-clara")}));
    EXPECT_FALSE(session().bPromptCancelled);
    EXPECT_TRUE(session().rsContacts->currentFilter().isEmpty());
    EXPECT_EQ(session().rsContacts->RecordCount(), 3);
    EXPECT_FALSE(form->isLoaded());
}

TEST_F(SelectContacts, AContactNoLongerActiveLeavesAnEmptyEntryAtTheEnd)
{
    combo.texts.insert(1, QStringLiteral("Olive Left"));
    combo.ids.insert(1, 4);
    play(2, QString(), R"([
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Olive Left"},
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Benjamin Okafor"},
        {"form": "frmSelectContacts", "click": "OKButton"}])");
    EXPECT_EQ(selection(), (QStringList{QStringLiteral("c-ben"), QString()}));
    EXPECT_TRUE(sink.failures.empty());
}

TEST_F(SelectContacts, CancelSetsTheFlagAndKeepsTheEarlierSelection)
{
    session().aSelectedContacts.redim(1, 1);
    session().aSelectedContacts[1] = QStringLiteral("c-earlier");
    play(2, QString(), R"([
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Ada Byrne"},
        {"form": "frmSelectContacts", "click": "CancelButton"}])");
    EXPECT_TRUE(session().bPromptCancelled);
    EXPECT_EQ(selection(), QStringList{QStringLiteral("c-earlier")});
}

TEST_F(SelectContacts, TheCloseBoxLeavesFlagAndArrayAsTheyWere)
{
    session().aSelectedContacts.redim(1, 2);
    session().aSelectedContacts[1] = QStringLiteral("c-one");
    session().aSelectedContacts[2] = QStringLiteral("c-two");
    play(2, QString(), R"([
        {"form": "frmSelectContacts", "select": "lbContacts", "item": "Ada Byrne"},
        {"form": "frmSelectContacts", "close": true}])");
    EXPECT_FALSE(session().bPromptCancelled);
    EXPECT_EQ(selection(), (QStringList{QStringLiteral("c-one"), QStringLiteral("c-two")}));
}

TEST_F(SelectContacts, AnArrayNoDialogHasDimensionedHasNoUpperBound)
{
    play(2, QString(), R"([{"form": "frmSelectContacts", "close": true}])");
    EXPECT_FALSE(session().aSelectedContacts.dimensioned());
    try {
        (void)session().aSelectedContacts.ubound();
        ADD_FAILURE() << "an upper bound was read";
    } catch (const Failure& f) {
        EXPECT_EQ(f.number(), 9);
    }
}

TEST_F(SelectContacts, AnEmptyListLeavesOnlyCancel)
{
    combo.texts = {QString()};
    combo.ids = {9999999};
    play(1, QString(), R"([
        {"form": "frmSelectContacts", "snapshot": true},
        {"form": "frmSelectContacts", "click": "CancelButton"}])");
    EXPECT_EQ(form->lbContacts.ListCount(), 0);
    const QJsonObject controls = firstEvent(*host, QStringLiteral("snapshot"))[QStringLiteral("controls")].toObject();
    EXPECT_FALSE(controls[QStringLiteral("OKButton")][QStringLiteral("enabled")].toBool());
    EXPECT_TRUE(controls[QStringLiteral("CancelButton")][QStringLiteral("enabled")].toBool());
}

} // namespace
