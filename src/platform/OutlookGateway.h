#pragma once
// The task store port: the mail client's object model as the component uses it. An application
// with a Version and a namespace; the namespace finds items and folders by EntryID and StoreID;
// a folder's Items add new tasks; task and contact items carry their properties by name as
// Values. Members are named as the object model names them.
//
// Failures: an unknown EntryID or StoreID, a property the item does not have, a value the item
// refuses, a file that cannot be read or written: each is a Failure with a description that
// names what was wrong.
#include "runtime/Date.h"
#include "runtime/Value.h"
#include <QString>
#include <QStringList>
#include <memory>

namespace steplets {
class SafeTaskItem;
}

namespace steplets::ol {

class TaskItem;
class ContactItem;
class Items;

// Recurrence types and user property types, by the object model's own codes.
enum RecurrenceTypes { olRecursDaily = 0, olRecursWeekly = 1, olRecursMonthly = 2, olRecursMonthNth = 3,
                       olRecursYearly = 5, olRecursYearNth = 6 };
enum DaysOfWeek { olSunday = 1, olMonday = 2, olTuesday = 4, olWednesday = 8, olThursday = 16,
                  olFriday = 32, olSaturday = 64 };
enum UserPropertyTypes { olText = 1, olNumber = 3, olDateTime = 5, olYesNo = 6, olDuration = 7,
                         olPercent = 12, olCurrency = 14, olInteger = 20 };
enum TaskStatus { olTaskNotStarted = 0, olTaskInProgress = 1, olTaskComplete = 2, olTaskWaiting = 3,
                  olTaskDeferred = 4 };
enum Importance { olImportanceLow = 0, olImportanceNormal = 1, olImportanceHigh = 2 };
enum Sensitivity { olNormal = 0, olPersonal = 1, olPrivate = 2, olConfidential = 3 };

// Where an item is shown to the person at the screen. Display(modal) hands the item over and, when
// modal, returns once the user is done with it; the user may change properties and Save.
class ItemDisplay {
public:
    virtual ~ItemDisplay() = default;
    virtual void displayTask(TaskItem& item, bool modal) = 0;
    virtual void displayContact(ContactItem& item, bool modal) = 0;
    // Display(False) of a task: the window may stay up after the caller has let go of the item,
    // so it is handed a handle of its own (nullptr when the store has none to give).
    virtual void displayTaskModeless(TaskItem& item, const std::shared_ptr<TaskItem>& own)
    {
        (void)own;
        displayTask(item, false);
    }
};

// What task and contact items share.
class Item {
public:
    enum class Kind { Task, Contact };
    virtual ~Item() = default;
    virtual Kind kind() const = 0;

    // Properties by the object model's names ("Subject", "DueDate", "FileAs", ...). Reading a
    // name the item does not have, or writing a value it refuses, is a failure.
    virtual Value get(const QString& name) const = 0;
    virtual void set(const QString& name, const Value& value) = 0;

    // Empty until the item has been saved once.
    virtual QString EntryID() const = 0;
    // False while the item holds changes that are not in the store.
    virtual bool Saved() const = 0;
    virtual void Save() = 0;
    // Removes the item from the store; an unsaved new item is just dropped. Any later use but
    // reading is a failure.
    virtual void Delete() = 0;
    // Shows the item to the user; with modal True returns when the user has closed it.
    virtual void Display(bool modal = false) = 0;

    QString Subject() const { return get(QStringLiteral("Subject")).textOrEmpty(); }
};

class RecurrencePattern {
public:
    virtual ~RecurrencePattern() = default;
    // RecurrenceType, Interval, DayOfWeekMask, DayOfMonth, Instance, MonthOfYear,
    // PatternStartDate, PatternEndDate, Occurrences, NoEndDate, Regenerate.
    virtual Value get(const QString& name) const = 0;
    virtual void set(const QString& name, const Value& value) = 0;
};

class Link {
public:
    virtual ~Link() = default;
    virtual QString Name() const = 0;                 // the contact's FileAs when it was linked
    virtual QString EntryID() const = 0;              // the linked contact's EntryID
    virtual std::shared_ptr<ContactItem> Item() const = 0;   // the contact, fetched afresh
};

class Links {
public:
    virtual ~Links() = default;
    virtual int Count() const = 0;
    virtual std::shared_ptr<Link> Item(int index) const = 0;   // 1-based; out of range is failure 9
    virtual std::shared_ptr<Link> Add(const ContactItem& contact) = 0;
};

class UserProperty {
public:
    virtual ~UserProperty() = default;
    virtual QString Name() const = 0;
    virtual int Type() const = 0;
    virtual steplets::Value get() const = 0;
    virtual void set(const steplets::Value& value) = 0;
    steplets::Value Value() const { return get(); }
};

class UserProperties {
public:
    virtual ~UserProperties() = default;
    virtual int Count() const = 0;
    virtual std::shared_ptr<UserProperty> Item(int index) const = 0;   // 1-based
    virtual std::shared_ptr<UserProperty> Find(const QString& name) const = 0;   // nullptr if none
    // Adds a property with the type's default value; an existing name is a failure.
    virtual std::shared_ptr<UserProperty> Add(const QString& name, int type, bool addToFolderFields = true) = 0;
};

class TaskItem : public Item {
public:
    Kind kind() const override { return Kind::Task; }
    // Makes the task recurring and returns its live pattern, the same object on each call.
    virtual std::shared_ptr<RecurrencePattern> GetRecurrencePattern() = 0;
    virtual void ClearRecurrencePattern() = 0;
    virtual ol::Links& Links() = 0;
    virtual ol::UserProperties& UserProperties() = 0;
    // Makes the task an assigned task.
    virtual void Assign() = 0;

protected:
    // The message text; reached only through SafeTaskItem, never through get/set.
    friend class steplets::SafeTaskItem;
    virtual QString safeBody() const = 0;
    virtual void setSafeBody(const QString& body) = 0;
};

class ContactItem : public Item {
public:
    Kind kind() const override { return Kind::Contact; }
    QString FileAs() const { return get(QStringLiteral("FileAs")).textOrEmpty(); }
};

class Items {
public:
    virtual ~Items() = default;
    virtual int Count() const = 0;
    // 1-based, in the order of the EntryIDs.
    virtual std::shared_ptr<ol::Item> Item(int index) const = 0;
    // A new unsaved task of this folder.
    virtual std::shared_ptr<TaskItem> Add() = 0;
};

class MAPIFolder {
public:
    virtual ~MAPIFolder() = default;
    virtual QString EntryID() const = 0;
    virtual QString StoreID() const = 0;
    virtual ol::Items& Items() = 0;                   // lives as long as the folder
};

class NameSpace {
public:
    virtual ~NameSpace() = default;
    virtual std::shared_ptr<Item> GetItemFromID(const QString& entryID, const QString& storeID) = 0;
    virtual std::shared_ptr<MAPIFolder> GetFolderFromID(const QString& entryID, const QString& storeID) = 0;
};

class Application {
public:
    virtual ~Application() = default;
    virtual QString Version() const = 0;
    virtual std::shared_ptr<ol::NameSpace> GetNamespace(const QString& type = QStringLiteral("MAPI")) = 0;
};

// The item as a task or as a contact; the wrong kind (or none) is a type mismatch, as assigning
// the object to a variable of the other type would be.
std::shared_ptr<TaskItem> asTask(const std::shared_ptr<Item>& item);
std::shared_ptr<ContactItem> asContact(const std::shared_ptr<Item>& item);

} // namespace steplets::ol
