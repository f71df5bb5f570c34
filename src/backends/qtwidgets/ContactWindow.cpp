#include "ContactWindow.h"
#include "runtime/Failure.h"
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScrollArea>
#include <QVBoxLayout>

namespace steplets::qt {

namespace {

QString text(const ol::ContactItem& item, const QString& name)
{
    try {
        return item.get(name).textOrEmpty();
    } catch (const Failure&) {
        return {};
    }
}

struct Entry {
    const char* property;
    const char* label;
};

const Entry kNames[] = {{"FullName", "Full name"}, {"FileAs", "File as"}, {"NickName", "Nickname"},
                        {"CompanyName", "Company"}, {"Department", "Department"}, {"JobTitle", "Job title"}};
const Entry kEmails[] = {{"Email1Address", "E-mail"}, {"Email2Address", "E-mail 2"}, {"Email3Address", "E-mail 3"},
                         {"BusinessHomePage", "Web page"}};
const Entry kPhones[] = {{"BusinessTelephoneNumber", "Business"},   {"Business2TelephoneNumber", "Business 2"},
                         {"CompanyMainTelephoneNumber", "Company"}, {"HomeTelephoneNumber", "Home"},
                         {"Home2TelephoneNumber", "Home 2"},        {"MobileTelephoneNumber", "Mobile"},
                         {"PrimaryTelephoneNumber", "Primary"},     {"BusinessFaxNumber", "Business fax"},
                         {"HomeFaxNumber", "Home fax"},             {"PagerNumber", "Pager"},
                         {"CarTelephoneNumber", "Car"},             {"AssistantTelephoneNumber", "Assistant"},
                         {"CallbackTelephoneNumber", "Callback"},   {"OtherTelephoneNumber", "Other"}};
const Entry kAddresses[] = {{"BusinessAddress", "Business"}, {"HomeAddress", "Home"}, {"OtherAddress", "Other"}};

} // namespace

ContactWindow::ContactWindow(const ol::ContactItem& item, QWidget* parent) : QDialog(parent)
{
    setObjectName(QStringLiteral("ContactWindow"));
    setModal(true);
    const QString fileAs = text(item, QStringLiteral("FileAs"));
    setWindowTitle((fileAs.isEmpty() ? QStringLiteral("Untitled") : fileAs) + QStringLiteral(" - Contact"));

    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    // One group per kind of entry; a group with nothing in it is not shown.
    auto group = [&](const QString& title, const auto& entries, bool multiLine) {
        auto* box = new QGroupBox(title, content);
        auto* form = new QFormLayout(box);
        for (const Entry& e : entries) {
            const QString property = QString::fromLatin1(e.property);
            const QString value = text(item, property);
            if (value.isEmpty())
                continue;
            // A label, not a read-only edit box: a box that takes the cursor looks as if an
            // edit would be kept, and this window saves nothing.
            auto* field = new QLabel(value, box);
            field->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
            field->setWordWrap(multiLine);
            field->setObjectName(property);
            form->addRow(QString::fromLatin1(e.label) + QLatin1Char(':'), field);
        }
        if (form->rowCount() == 0) {
            delete box;
            return;
        }
        column->addWidget(box);
    };
    group(QStringLiteral("Name"), kNames, false);
    group(QStringLiteral("E-mail and web"), kEmails, false);
    group(QStringLiteral("Telephone numbers"), kPhones, false);
    group(QStringLiteral("Addresses"), kAddresses, true);
    column->addStretch(1);

    auto* scroll = new QScrollArea(this);
    scroll->setWidgetResizable(true);
    scroll->setWidget(content);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Close, this);
    buttons->button(QDialogButtonBox::Close)->setObjectName(QStringLiteral("close"));
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(scroll);
    layout->addWidget(buttons);
    resize(440, 520);
}

QString ContactWindow::shown(const QString& property) const
{
    const auto* field = findChild<QLabel*>(property);
    return field ? field->text() : QString();
}

} // namespace steplets::qt
