#pragma once
// The content of one task as the backend keeps it between file and item: plain fields named as
// the object model names them, with its defaults for a new task.
#include "platform/runtime/Date.h"
#include "platform/runtime/Value.h"
#include <QList>
#include <QString>
#include <optional>

namespace steplets::vdir {

struct PatternData {
    int RecurrenceType = 1;                // weekly, as a fresh pattern starts
    int Interval = 1;
    int DayOfWeekMask = 0;
    int DayOfMonth = 0;
    int Instance = 0;
    int MonthOfYear = 0;
    Date PatternStartDate = Date::noDate();
    Date PatternEndDate = Date::noDate();
    int Occurrences = 0;
    bool NoEndDate = true;
    bool Regenerate = false;
    friend bool operator==(const PatternData&, const PatternData&) = default;
};

struct LinkData {
    QString entryId;                       // file name of the contact in its collection
    QString uid;                           // the contact card's UID
    QString name;                          // FileAs at the time of linking
    friend bool operator==(const LinkData&, const LinkData&) = default;
};

struct UserPropertyData {
    QString name;
    int type = 1;
    bool inFolderFields = true;
    Value value;
    friend bool operator==(const UserPropertyData&, const UserPropertyData&) = default;
};

struct TaskData {
    QString uid;
    QString Subject;
    QString Body;
    QString BillingInformation;
    QString Categories;                    // "a, b" as the object model lists them
    QString Companies;
    QString Mileage;
    QString ReminderSoundFile;
    QString Role;
    QString To;                            // the assignee of an assigned task, as typed
    qint32 ActualWork = 0;                 // minutes
    qint32 TotalWork = 0;                  // minutes
    qint32 Importance = 1;
    qint32 PercentComplete = 0;
    qint32 Sensitivity = 0;
    qint32 Status = 0;
    bool NoAging = false;
    bool ReminderOverrideDefault = false;
    bool ReminderPlaySound = false;
    bool ReminderSet = false;
    bool TeamTask = false;
    bool assigned = false;
    Date DateCompleted = Date::noDate();
    Date DueDate = Date::noDate();
    Date StartDate = Date::noDate();
    Date ReminderTime = Date::noDate();
    std::optional<PatternData> pattern;
    QList<LinkData> links;
    QList<UserPropertyData> userProperties;
    friend bool operator==(const TaskData&, const TaskData&) = default;
};

} // namespace steplets::vdir
