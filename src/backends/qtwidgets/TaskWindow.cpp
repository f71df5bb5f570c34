#include "TaskWindow.h"
#include "SafeTaskItem.h"
#include "runtime/Failure.h"
#include <QButtonGroup>
#include <QCheckBox>
#include <QComboBox>
#include <QDateEdit>
#include <QDateTimeEdit>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QLocale>
#include <QMessageBox>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QSpinBox>
#include <QTabWidget>
#include <QVBoxLayout>

namespace steplets::qt {

namespace {

// The store refuses dates before this one.
const QDate kEarliest(1601, 1, 1);
const QDate kLatest(4500, 12, 31);

Value tryGet(const ol::Item& item, const QString& name)
{
    try {
        return item.get(name);
    } catch (const Failure&) {
        return Value();
    }
}

Value tryGet(const ol::RecurrencePattern& pattern, const QString& name)
{
    try {
        return pattern.get(name);
    } catch (const Failure&) {
        return Value();
    }
}

OptionalDate optionalDate(const Value& v)
{
    if (v.isNull())
        return std::nullopt;
    const Date d = v.toDate();
    if (d.isNoDate() || d.isZero())
        return std::nullopt;
    return d.date();
}

Value dateValue(const OptionalDate& d) { return d ? Value(Date::fromQDate(*d)) : Value(Date::noDate()); }

const char* const kDayNames[7] = {"Sunday", "Monday", "Tuesday", "Wednesday", "Thursday", "Friday", "Saturday"};

struct TypeChoice {
    int code;
    const char* text;
};
const TypeChoice kTypes[] = {{ol::olRecursDaily, "Daily"},
                             {ol::olRecursWeekly, "Weekly"},
                             {ol::olRecursMonthly, "Monthly, on a day of the month"},
                             {ol::olRecursMonthNth, "Monthly, on a weekday of the month"},
                             {ol::olRecursYearly, "Yearly, on a date"},
                             {ol::olRecursYearNth, "Yearly, on a weekday of a month"}};

} // namespace

// --- OptionalDateEdit ---

OptionalDateEdit::OptionalDateEdit(const QString& name, QWidget* parent)
    : QWidget(parent), m_date(new QDateEdit(this)), m_none(new QCheckBox(QStringLiteral("None"), this))
{
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(m_date, 1);
    row->addWidget(m_none);
    m_date->setObjectName(name);
    m_none->setObjectName(name + QStringLiteral("None"));
    m_date->setCalendarPopup(true);
    m_date->setDisplayFormat(QStringLiteral("ddd yyyy-MM-dd"));
    m_date->setDateRange(kEarliest, kLatest);
    m_date->setDate(QDate::currentDate());
    connect(m_none, &QCheckBox::toggled, m_date, &QWidget::setDisabled);
}

OptionalDate OptionalDateEdit::value() const
{
    if (m_none->isChecked())
        return std::nullopt;
    return m_date->date();
}

void OptionalDateEdit::setValue(const OptionalDate& date)
{
    if (date)
        m_date->setDate(*date);
    m_none->setChecked(!date);
    m_date->setDisabled(!date);
}

// --- TaskWindow ---

TaskWindow::TaskWindow(ol::TaskItem& item, QWidget* parent) : QDialog(parent), m_item(item)
{
    setObjectName(QStringLiteral("TaskWindow"));
    setModal(true);
    m_assigned = tryGet(item, QStringLiteral("DelegationState")).longOrZero() != 0;

    auto* tabs = new QTabWidget(this);
    tabs->setObjectName(QStringLiteral("pages"));
    auto* taskPage = new QWidget(tabs);
    auto* recurrencePage = new QWidget(tabs);
    m_details = new TaskDetailsPage(tabs);
    m_details->setObjectName(QStringLiteral("details"));
    tabs->addTab(taskPage, QStringLiteral("Task"));
    tabs->addTab(m_details, QStringLiteral("Details"));
    tabs->addTab(recurrencePage, QStringLiteral("Recurrence"));
    buildTaskPage(taskPage);
    buildRecurrencePage(recurrencePage);

    auto* buttons = new QDialogButtonBox(this);
    auto* save = buttons->addButton(QStringLiteral("Save and Close"), QDialogButtonBox::AcceptRole);
    save->setObjectName(QStringLiteral("saveAndClose"));
    save->setDefault(false);
    save->setAutoDefault(false);
    connect(save, &QPushButton::clicked, this, [this] {
        if (saveAndClose())
            accept();
    });
    if (m_assigned) {
        auto* sendButton = buttons->addButton(QStringLiteral("Send"), QDialogButtonBox::ActionRole);
        sendButton->setObjectName(QStringLiteral("send"));
        sendButton->setAutoDefault(false);
        connect(sendButton, &QPushButton::clicked, this, [this] {
            if (send())
                accept();
        });
    }

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(tabs);
    layout->addWidget(buttons);

    showFields(readItem());
    m_opened = fields();
    const QString subject = m_opened.subject;
    setWindowTitle((subject.isEmpty() ? QStringLiteral("Untitled") : subject) + QStringLiteral(" - Task"));
    resize(560, 520);
}

void TaskWindow::buildTaskPage(QWidget* page)
{
    auto* form = new QFormLayout(page);
    auto named = [](auto* w, const char* name) {
        w->setObjectName(QString::fromLatin1(name));
        return w;
    };

    m_to = named(new QLineEdit(page), "To");
    m_to->setPlaceholderText(QStringLiteral("The person this task is assigned to"));
    if (m_assigned)
        form->addRow(QStringLiteral("To:"), m_to);
    else
        m_to->hide();

    m_subject = named(new QLineEdit(page), "Subject");
    form->addRow(QStringLiteral("Subject:"), m_subject);
    m_start = new OptionalDateEdit(QStringLiteral("StartDate"), page);
    form->addRow(QStringLiteral("Start date:"), m_start);
    m_due = new OptionalDateEdit(QStringLiteral("DueDate"), page);
    form->addRow(QStringLiteral("Due date:"), m_due);

    m_status = named(new QComboBox(page), "Status");
    m_status->addItems({QStringLiteral("Not Started"), QStringLiteral("In Progress"), QStringLiteral("Completed"),
                        QStringLiteral("Waiting on someone else"), QStringLiteral("Deferred")});
    form->addRow(QStringLiteral("Status:"), m_status);
    m_priority = named(new QComboBox(page), "Importance");
    m_priority->addItems({QStringLiteral("Low"), QStringLiteral("Normal"), QStringLiteral("High")});
    form->addRow(QStringLiteral("Priority:"), m_priority);
    m_percent = named(new QSpinBox(page), "PercentComplete");
    m_percent->setRange(0, 100);
    m_percent->setSuffix(QStringLiteral(" %"));
    form->addRow(QStringLiteral("Complete:"), m_percent);
    coupleStatusAndPercent();

    auto* reminderRow = new QWidget(page);
    auto* reminderLayout = new QHBoxLayout(reminderRow);
    reminderLayout->setContentsMargins(0, 0, 0, 0);
    m_reminder = named(new QCheckBox(QStringLiteral("Remind me at"), reminderRow), "ReminderSet");
    m_reminderTime = named(new QDateTimeEdit(reminderRow), "ReminderTime");
    m_reminderTime->setCalendarPopup(true);
    m_reminderTime->setDisplayFormat(QStringLiteral("ddd yyyy-MM-dd HH:mm"));
    m_reminderTime->setDateRange(kEarliest, kLatest);
    reminderLayout->addWidget(m_reminder);
    reminderLayout->addWidget(m_reminderTime, 1);
    connect(m_reminder, &QCheckBox::toggled, m_reminderTime, &QWidget::setEnabled);
    form->addRow(QStringLiteral("Reminder:"), reminderRow);

    m_body = named(new QPlainTextEdit(page), "Body");
    form->addRow(QStringLiteral("Notes:"), m_body);
}

void TaskWindow::buildRecurrencePage(QWidget* page)
{
    auto* layout = new QVBoxLayout(page);
    m_recurring = new QCheckBox(QStringLiteral("This task recurs"), page);
    m_recurring->setObjectName(QStringLiteral("recurring"));
    layout->addWidget(m_recurring);

    m_patternBox = new QWidget(page);
    layout->addWidget(m_patternBox);
    layout->addStretch(1);
    auto* form = new QFormLayout(m_patternBox);
    form->setContentsMargins(0, 0, 0, 0);

    m_type = new QComboBox(m_patternBox);
    m_type->setObjectName(QStringLiteral("recurrenceType"));
    for (const TypeChoice& t : kTypes)
        m_type->addItem(QString::fromLatin1(t.text), t.code);
    form->addRow(QStringLiteral("Recurs:"), m_type);

    m_interval = new QSpinBox(m_patternBox);
    m_interval->setObjectName(QStringLiteral("interval"));
    m_interval->setRange(1, 999);
    form->addRow(QStringLiteral("Every:"), m_interval);

    auto* days = new QWidget(m_patternBox);
    auto* daysLayout = new QGridLayout(days);
    daysLayout->setContentsMargins(0, 0, 0, 0);
    for (int i = 0; i < 7; ++i) {
        m_days[i] = new QCheckBox(QString::fromLatin1(kDayNames[i]), days);
        m_days[i]->setObjectName(QStringLiteral("dayOfWeek%1").arg(i));
        daysLayout->addWidget(m_days[i], i / 4, i % 4);
    }
    form->addRow(QStringLiteral("On:"), days);

    m_dayOfMonth = new QSpinBox(m_patternBox);
    m_dayOfMonth->setObjectName(QStringLiteral("dayOfMonth"));
    m_dayOfMonth->setRange(0, 31);
    m_dayOfMonth->setSpecialValueText(QStringLiteral("(none)"));
    form->addRow(QStringLiteral("Day of the month:"), m_dayOfMonth);

    m_instance = new QComboBox(m_patternBox);
    m_instance->setObjectName(QStringLiteral("instance"));
    m_instance->addItems({QStringLiteral("(none)"), QStringLiteral("First"), QStringLiteral("Second"),
                          QStringLiteral("Third"), QStringLiteral("Fourth"), QStringLiteral("Last")});
    form->addRow(QStringLiteral("Which week:"), m_instance);

    m_month = new QComboBox(m_patternBox);
    m_month->setObjectName(QStringLiteral("monthOfYear"));
    m_month->addItem(QStringLiteral("(none)"));
    for (int m = 1; m <= 12; ++m)
        m_month->addItem(QLocale::c().standaloneMonthName(m));
    form->addRow(QStringLiteral("Month:"), m_month);

    m_patternStart = new OptionalDateEdit(QStringLiteral("patternStart"), m_patternBox);
    form->addRow(QStringLiteral("Starting:"), m_patternStart);

    auto* ends = new QWidget(m_patternBox);
    auto* endsLayout = new QGridLayout(ends);
    endsLayout->setContentsMargins(0, 0, 0, 0);
    m_endGroup = new QButtonGroup(this);
    auto* never = new QRadioButton(QStringLiteral("No end date"), ends);
    auto* after = new QRadioButton(QStringLiteral("End after"), ends);
    auto* by = new QRadioButton(QStringLiteral("End by"), ends);
    never->setObjectName(QStringLiteral("endNever"));
    after->setObjectName(QStringLiteral("endAfter"));
    by->setObjectName(QStringLiteral("endBy"));
    m_endGroup->addButton(never, static_cast<int>(TaskPatternFields::End::Never));
    m_endGroup->addButton(after, static_cast<int>(TaskPatternFields::End::AfterOccurrences));
    m_endGroup->addButton(by, static_cast<int>(TaskPatternFields::End::ByDate));
    m_occurrences = new QSpinBox(ends);
    m_occurrences->setObjectName(QStringLiteral("occurrences"));
    m_occurrences->setRange(1, 999);
    m_occurrences->setSuffix(QStringLiteral(" occurrences"));
    m_endDate = new QDateEdit(ends);
    m_endDate->setObjectName(QStringLiteral("endDate"));
    m_endDate->setCalendarPopup(true);
    m_endDate->setDisplayFormat(QStringLiteral("ddd yyyy-MM-dd"));
    m_endDate->setDateRange(kEarliest, kLatest);
    endsLayout->addWidget(never, 0, 0);
    endsLayout->addWidget(after, 1, 0);
    endsLayout->addWidget(m_occurrences, 1, 1);
    endsLayout->addWidget(by, 2, 0);
    endsLayout->addWidget(m_endDate, 2, 1);
    form->addRow(QStringLiteral("Ends:"), ends);

    m_regenerate = new QCheckBox(QStringLiteral("Make the next task when this one is completed"), m_patternBox);
    m_regenerate->setObjectName(QStringLiteral("regenerate"));
    form->addRow(QString(), m_regenerate);

    connect(m_recurring, &QCheckBox::toggled, this, [this](bool on) {
        m_patternBox->setEnabled(on);
        if (!on)
            return;
        // A new pattern starts on the task's own day; a weekly one with no day would never fall
        // due, so it gets that day too.
        const QDate anchor = m_start->value().value_or(m_due->value().value_or(QDate::currentDate()));
        if (!m_patternStart->value())
            m_patternStart->setValue(anchor);
        int mask = 0;
        for (int i = 0; i < 7; ++i)
            mask |= m_days[i]->isChecked() ? 1 << i : 0;
        if (mask == 0 && m_type->currentData().toInt() == ol::olRecursWeekly)
            m_days[anchor.dayOfWeek() % 7]->setChecked(true);
    });
    connect(m_type, &QComboBox::currentIndexChanged, this, [this] { enablePatternMembers(); });
    connect(m_endGroup, &QButtonGroup::idToggled, this, [this] { enablePatternMembers(); });
}

void TaskWindow::coupleStatusAndPercent()
{
    // The item completes a task at 100 % and reopens it below; the form shows the same at once.
    connect(m_status, &QComboBox::currentIndexChanged, this, [this](int status) {
        if (status == ol::olTaskComplete)
            m_percent->setValue(100);
        else if (m_percent->value() == 100)
            m_percent->setValue(0);
    });
    connect(m_percent, &QSpinBox::valueChanged, this, [this](int percent) {
        if (percent == 100)
            m_status->setCurrentIndex(ol::olTaskComplete);
        else if (m_status->currentIndex() == ol::olTaskComplete)
            m_status->setCurrentIndex(percent > 0 ? ol::olTaskInProgress : ol::olTaskNotStarted);
    });
}

void TaskWindow::enablePatternMembers()
{
    // Members the chosen type does not use stay as they are, greyed.
    const int type = m_type->currentData().toInt();
    const bool byWeekday = type == ol::olRecursDaily || type == ol::olRecursWeekly || type == ol::olRecursMonthNth
                           || type == ol::olRecursYearNth;
    for (QCheckBox* day : m_days)
        day->setEnabled(byWeekday);
    m_dayOfMonth->setEnabled(type == ol::olRecursMonthly || type == ol::olRecursYearly);
    m_instance->setEnabled(type == ol::olRecursMonthNth || type == ol::olRecursYearNth);
    m_month->setEnabled(type == ol::olRecursYearly || type == ol::olRecursYearNth);
    const int end = m_endGroup->checkedId();
    m_occurrences->setEnabled(end == static_cast<int>(TaskPatternFields::End::AfterOccurrences));
    m_endDate->setEnabled(end == static_cast<int>(TaskPatternFields::End::ByDate));
}

// --- Reading and showing ---

TaskFields TaskWindow::readItem() const
{
    TaskFields f;
    f.subject = tryGet(m_item, QStringLiteral("Subject")).textOrEmpty();
    f.start = optionalDate(tryGet(m_item, QStringLiteral("StartDate")));
    f.due = optionalDate(tryGet(m_item, QStringLiteral("DueDate")));
    f.status = qBound(0, int(tryGet(m_item, QStringLiteral("Status")).longOrZero()), 4);
    const Value importance = tryGet(m_item, QStringLiteral("Importance"));
    f.importance = importance.isNull() ? ol::olImportanceNormal : qBound(0, int(importance.toLong()), 2);
    f.percentComplete = qBound(0, int(tryGet(m_item, QStringLiteral("PercentComplete")).longOrZero()), 100);
    f.reminderSet = tryGet(m_item, QStringLiteral("ReminderSet")).boolOrFalse();
    const OptionalDate reminderDay = optionalDate(tryGet(m_item, QStringLiteral("ReminderTime")));
    if (reminderDay)
        f.reminderTime = tryGet(m_item, QStringLiteral("ReminderTime")).toDate().toQDateTime();
    else
        f.reminderTime = QDateTime(f.due.value_or(QDate::currentDate()), QTime(8, 0));
    try {
        f.body = SafeTaskItem::borrowing(m_item).Body();
    } catch (const Failure&) {
    }
    f.to = tryGet(m_item, QStringLiteral("To")).textOrEmpty();

    f.details = TaskDetailsPage::read(m_item);
    f.recurring = tryGet(m_item, QStringLiteral("IsRecurring")).boolOrFalse();
    TaskPatternFields& p = f.pattern;
    p.endDate = f.due.value_or(QDate::currentDate()).addMonths(3);
    if (!f.recurring)
        return f;
    // Only a task that recurs already is asked for its pattern: asking makes a task recur.
    const auto pattern = m_item.GetRecurrencePattern();
    auto number = [&](const char* name) { return int(tryGet(*pattern, QString::fromLatin1(name)).longOrZero()); };
    p.type = number("RecurrenceType");
    p.interval = qMax(1, number("Interval"));
    p.dayOfWeekMask = number("DayOfWeekMask") & 127;
    p.dayOfMonth = qBound(0, number("DayOfMonth"), 31);
    p.instance = qBound(0, number("Instance"), 5);
    p.monthOfYear = qBound(0, number("MonthOfYear"), 12);
    p.start = optionalDate(tryGet(*pattern, QStringLiteral("PatternStartDate")));
    const OptionalDate end = optionalDate(tryGet(*pattern, QStringLiteral("PatternEndDate")));
    const int occurrences = number("Occurrences");
    if (tryGet(*pattern, QStringLiteral("NoEndDate")).boolOrFalse())
        p.end = TaskPatternFields::End::Never;
    else if (occurrences > 0)
        p.end = TaskPatternFields::End::AfterOccurrences;
    else if (end)
        p.end = TaskPatternFields::End::ByDate;
    if (occurrences > 0)
        p.occurrences = occurrences;
    if (end)
        p.endDate = *end;
    p.regenerate = tryGet(*pattern, QStringLiteral("Regenerate")).boolOrFalse();
    return f;
}

void TaskWindow::showFields(const TaskFields& f)
{
    m_to->setText(f.to);
    m_subject->setText(f.subject);
    m_start->setValue(f.start);
    m_due->setValue(f.due);
    m_status->setCurrentIndex(f.status);
    m_percent->setValue(f.percentComplete);
    m_priority->setCurrentIndex(f.importance);
    m_reminder->setChecked(f.reminderSet);
    m_reminderTime->setEnabled(f.reminderSet);
    m_reminderTime->setDateTime(f.reminderTime);
    m_body->setPlainText(f.body);
    m_details->show(f.details);

    const TaskPatternFields& p = f.pattern;
    const int typeIndex = m_type->findData(p.type);
    m_type->setCurrentIndex(typeIndex < 0 ? 1 : typeIndex);
    m_interval->setValue(p.interval);
    for (int i = 0; i < 7; ++i)
        m_days[i]->setChecked(p.dayOfWeekMask & (1 << i));
    m_dayOfMonth->setValue(p.dayOfMonth);
    m_instance->setCurrentIndex(p.instance);
    m_month->setCurrentIndex(p.monthOfYear);
    m_patternStart->setValue(p.start);
    m_endGroup->button(static_cast<int>(p.end))->setChecked(true);
    m_occurrences->setValue(p.occurrences);
    m_endDate->setDate(p.endDate);
    m_regenerate->setChecked(p.regenerate);
    // Set last, so that opening a weekly pattern keeps its days as stored.
    m_recurring->setChecked(f.recurring);
    m_patternBox->setEnabled(f.recurring);
    enablePatternMembers();
}

TaskFields TaskWindow::fields() const
{
    TaskFields f;
    f.to = m_to->text();
    f.subject = m_subject->text();
    f.start = m_start->value();
    f.due = m_due->value();
    f.status = m_status->currentIndex();
    f.importance = m_priority->currentIndex();
    f.percentComplete = m_percent->value();
    f.reminderSet = m_reminder->isChecked();
    f.reminderTime = m_reminderTime->dateTime();
    f.body = m_body->toPlainText();
    f.details = m_details->value();
    f.recurring = m_recurring->isChecked();
    TaskPatternFields& p = f.pattern;
    p.type = m_type->currentData().toInt();
    p.interval = m_interval->value();
    for (int i = 0; i < 7; ++i)
        p.dayOfWeekMask |= m_days[i]->isChecked() ? 1 << i : 0;
    p.dayOfMonth = m_dayOfMonth->value();
    p.instance = m_instance->currentIndex();
    p.monthOfYear = m_month->currentIndex();
    p.start = m_patternStart->value();
    p.end = static_cast<TaskPatternFields::End>(m_endGroup->checkedId());
    p.occurrences = m_occurrences->value();
    p.endDate = m_endDate->date();
    p.regenerate = m_regenerate->isChecked();
    return f;
}

// --- Saving ---

bool TaskWindow::writeChanges()
{
    const TaskFields now = fields();
    const TaskFields& was = m_opened;
    try {
        if (now.subject != was.subject)
            m_item.set(QStringLiteral("Subject"), now.subject);
        if (now.start != was.start)
            m_item.set(QStringLiteral("StartDate"), dateValue(now.start));
        if (now.due != was.due)
            m_item.set(QStringLiteral("DueDate"), dateValue(now.due));
        // Status before percentage: the form already keeps the two in step.
        if (now.status != was.status)
            m_item.set(QStringLiteral("Status"), now.status);
        if (now.percentComplete != was.percentComplete)
            m_item.set(QStringLiteral("PercentComplete"), now.percentComplete);
        if (now.importance != was.importance)
            m_item.set(QStringLiteral("Importance"), now.importance);
        if (now.reminderSet != was.reminderSet)
            m_item.set(QStringLiteral("ReminderSet"), now.reminderSet);
        if (now.reminderTime != was.reminderTime || (now.reminderSet && !was.reminderSet))
            m_item.set(QStringLiteral("ReminderTime"), Date::fromQDateTime(now.reminderTime));
        if (now.body != was.body)
            SafeTaskItem::borrowing(m_item).setBody(now.body);
        if (now.to != was.to)
            m_item.set(QStringLiteral("To"), now.to);
        TaskDetailsPage::write(m_item, now.details, was.details);
        writePattern(now);
    } catch (const Failure& f) {
        refused(f.description());
        return false;
    }
    m_opened = now;
    return true;
}

void TaskWindow::writePattern(const TaskFields& now)
{
    const TaskFields& was = m_opened;
    if (!now.recurring) {
        if (was.recurring)
            m_item.ClearRecurrencePattern();
        return;
    }
    // A new pattern, or one of a new type, starts from the item's defaults: write every member.
    const TaskPatternFields& a = now.pattern;
    const TaskPatternFields& b = was.pattern;
    const bool all = !was.recurring || a.type != b.type;
    const auto pattern = m_item.GetRecurrencePattern();
    auto write = [&](bool changed, const char* name, const Value& value) {
        if (all || changed)
            pattern->set(QString::fromLatin1(name), value);
    };
    write(a.type != b.type, "RecurrenceType", a.type);
    write(a.interval != b.interval, "Interval", a.interval);
    write(a.dayOfWeekMask != b.dayOfWeekMask, "DayOfWeekMask", a.dayOfWeekMask);
    write(a.dayOfMonth != b.dayOfMonth, "DayOfMonth", a.dayOfMonth);
    write(a.instance != b.instance, "Instance", a.instance);
    write(a.monthOfYear != b.monthOfYear, "MonthOfYear", a.monthOfYear);
    write(a.start != b.start, "PatternStartDate", dateValue(a.start));
    // Occurrences win over an end date: clear the one not chosen before writing the other.
    const bool endChanged = a.end != b.end || a.occurrences != b.occurrences || a.endDate != b.endDate;
    if (all || endChanged) {
        switch (a.end) {
        case TaskPatternFields::End::Never:
            pattern->set(QStringLiteral("NoEndDate"), true);
            break;
        case TaskPatternFields::End::AfterOccurrences:
            pattern->set(QStringLiteral("PatternEndDate"), Date::noDate());
            pattern->set(QStringLiteral("Occurrences"), a.occurrences);
            break;
        case TaskPatternFields::End::ByDate:
            pattern->set(QStringLiteral("Occurrences"), 0);
            pattern->set(QStringLiteral("PatternEndDate"), Date::fromQDate(a.endDate));
            break;
        }
    }
    write(a.regenerate != b.regenerate, "Regenerate", a.regenerate);
}

void TaskWindow::refused(const QString& what)
{
    QMessageBox::warning(this, windowTitle(), QStringLiteral("The task could not be saved.\n\n") + what);
}

bool TaskWindow::saveAndClose()
{
    if (!writeChanges())
        return false;
    try {
        m_item.Save();
    } catch (const Failure& f) {
        refused(f.description());
        return false;
    }
    return true;
}

bool TaskWindow::send()
{
    if (m_to->text().trimmed().isEmpty()) {
        QMessageBox::warning(this, windowTitle(),
                             QStringLiteral("There is no one to send this task to. Type a name in the To box."));
        m_to->setFocus();
        return false;
    }
    return saveAndClose();
}

void TaskWindow::reject()
{
    if (isModified()) {
        const auto answer = QMessageBox::question(
            this, windowTitle(), QStringLiteral("Do you want to save the changes to this task?"),
            QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel, QMessageBox::Yes);
        if (answer == QMessageBox::Cancel || (answer == QMessageBox::Yes && !saveAndClose()))
            return;
    }
    QDialog::reject();
}

} // namespace steplets::qt
