#include "TaskDetailsPage.h"
#include "runtime/Failure.h"
#include <QCheckBox>
#include <QComboBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QSpinBox>

namespace steplets::qt {

namespace {

// A property the item does not have reads as Null, so the page opens on any item.
Value tryGet(const ol::Item& item, const char* name)
{
    try {
        return item.get(QString::fromLatin1(name));
    } catch (const Failure&) {
        return {};
    }
}

template <class W>
W* named(W* w, const char* property)
{
    w->setObjectName(QString::fromLatin1(property));
    return w;
}

QSpinBox* minutesBox(QWidget* parent, const char* property)
{
    auto* box = named(new QSpinBox(parent), property);
    box->setRange(0, 9'999'999);
    box->setSuffix(QStringLiteral(" min"));
    return box;
}

} // namespace

TaskDetailsPage::TaskDetailsPage(QWidget* parent)
    : QWidget(parent),
      m_categories(named(new QLineEdit(this), "Categories")),
      m_sensitivity(named(new QComboBox(this), "Sensitivity")),
      m_billing(named(new QLineEdit(this), "BillingInformation")),
      m_companies(named(new QLineEdit(this), "Companies")),
      m_mileage(named(new QLineEdit(this), "Mileage")),
      m_actualWork(minutesBox(this, "ActualWork")),
      m_totalWork(minutesBox(this, "TotalWork")),
      m_role(named(new QLineEdit(this), "Role")),
      m_playSound(named(new QCheckBox(QStringLiteral("Play this sound:"), this), "ReminderPlaySound")),
      m_soundFile(named(new QLineEdit(this), "ReminderSoundFile")),
      m_overrideDefault(named(new QCheckBox(QStringLiteral("Use this reminder instead of the default"), this), "ReminderOverrideDefault")),
      m_noAging(named(new QCheckBox(QStringLiteral("Do not age this task"), this), "NoAging")),
      m_teamTask(named(new QCheckBox(QStringLiteral("Team task"), this), "TeamTask"))
{
    m_categories->setPlaceholderText(QStringLiteral("Separated by commas"));
    m_sensitivity->addItems({QStringLiteral("Normal"), QStringLiteral("Personal"), QStringLiteral("Private"),
                             QStringLiteral("Confidential")});
    auto* form = new QFormLayout(this);
    form->addRow(QStringLiteral("Categories:"), m_categories);
    form->addRow(QStringLiteral("Sensitivity:"), m_sensitivity);
    form->addRow(QStringLiteral("Billing information:"), m_billing);
    form->addRow(QStringLiteral("Companies:"), m_companies);
    form->addRow(QStringLiteral("Mileage:"), m_mileage);
    form->addRow(QStringLiteral("Actual work:"), m_actualWork);
    form->addRow(QStringLiteral("Total work:"), m_totalWork);
    form->addRow(QStringLiteral("Role:"), m_role);
    auto* sound = new QWidget(this);
    auto* soundRow = new QHBoxLayout(sound);
    soundRow->setContentsMargins(0, 0, 0, 0);
    soundRow->addWidget(m_playSound);
    soundRow->addWidget(m_soundFile, 1);
    connect(m_playSound, &QCheckBox::toggled, m_soundFile, &QWidget::setEnabled);
    form->addRow(QStringLiteral("Reminder sound:"), sound);
    form->addRow(QString(), m_overrideDefault);
    form->addRow(QString(), m_noAging);
    form->addRow(QString(), m_teamTask);
}

TaskDetails TaskDetailsPage::read(const ol::TaskItem& item)
{
    TaskDetails d;
    d.categories = tryGet(item, "Categories").textOrEmpty();
    d.sensitivity = qBound(0, int(tryGet(item, "Sensitivity").longOrZero()), 3);
    d.billingInformation = tryGet(item, "BillingInformation").textOrEmpty();
    d.companies = tryGet(item, "Companies").textOrEmpty();
    d.mileage = tryGet(item, "Mileage").textOrEmpty();
    d.actualWork = qMax(0, int(tryGet(item, "ActualWork").longOrZero()));
    d.totalWork = qMax(0, int(tryGet(item, "TotalWork").longOrZero()));
    d.role = tryGet(item, "Role").textOrEmpty();
    d.reminderPlaySound = tryGet(item, "ReminderPlaySound").boolOrFalse();
    d.reminderSoundFile = tryGet(item, "ReminderSoundFile").textOrEmpty();
    d.reminderOverrideDefault = tryGet(item, "ReminderOverrideDefault").boolOrFalse();
    d.noAging = tryGet(item, "NoAging").boolOrFalse();
    d.teamTask = tryGet(item, "TeamTask").boolOrFalse();
    return d;
}

void TaskDetailsPage::show(const TaskDetails& d)
{
    m_categories->setText(d.categories);
    m_sensitivity->setCurrentIndex(d.sensitivity);
    m_billing->setText(d.billingInformation);
    m_companies->setText(d.companies);
    m_mileage->setText(d.mileage);
    m_actualWork->setValue(d.actualWork);
    m_totalWork->setValue(d.totalWork);
    m_role->setText(d.role);
    m_playSound->setChecked(d.reminderPlaySound);
    m_soundFile->setText(d.reminderSoundFile);
    m_soundFile->setEnabled(d.reminderPlaySound);
    m_overrideDefault->setChecked(d.reminderOverrideDefault);
    m_noAging->setChecked(d.noAging);
    m_teamTask->setChecked(d.teamTask);
}

TaskDetails TaskDetailsPage::value() const
{
    TaskDetails d;
    d.categories = m_categories->text();
    d.sensitivity = m_sensitivity->currentIndex();
    d.billingInformation = m_billing->text();
    d.companies = m_companies->text();
    d.mileage = m_mileage->text();
    d.actualWork = m_actualWork->value();
    d.totalWork = m_totalWork->value();
    d.role = m_role->text();
    d.reminderPlaySound = m_playSound->isChecked();
    d.reminderSoundFile = m_soundFile->text();
    d.reminderOverrideDefault = m_overrideDefault->isChecked();
    d.noAging = m_noAging->isChecked();
    d.teamTask = m_teamTask->isChecked();
    return d;
}

void TaskDetailsPage::write(ol::TaskItem& item, const TaskDetails& now, const TaskDetails& was)
{
    auto put = [&](bool changed, const char* property, const Value& value) {
        if (changed) item.set(QString::fromLatin1(property), value);
    };
    put(now.categories != was.categories, "Categories", now.categories);
    put(now.sensitivity != was.sensitivity, "Sensitivity", now.sensitivity);
    put(now.billingInformation != was.billingInformation, "BillingInformation", now.billingInformation);
    put(now.companies != was.companies, "Companies", now.companies);
    put(now.mileage != was.mileage, "Mileage", now.mileage);
    put(now.actualWork != was.actualWork, "ActualWork", now.actualWork);
    put(now.totalWork != was.totalWork, "TotalWork", now.totalWork);
    put(now.role != was.role, "Role", now.role);
    put(now.reminderPlaySound != was.reminderPlaySound, "ReminderPlaySound", now.reminderPlaySound);
    put(now.reminderSoundFile != was.reminderSoundFile, "ReminderSoundFile", now.reminderSoundFile);
    put(now.reminderOverrideDefault != was.reminderOverrideDefault, "ReminderOverrideDefault", now.reminderOverrideDefault);
    put(now.noAging != was.noAging, "NoAging", now.noAging);
    put(now.teamTask != was.teamTask, "TeamTask", now.teamTask);
}

} // namespace steplets::qt
