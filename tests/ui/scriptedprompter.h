// A Prompter for tests: answers from queues the test fills, records every call, and never
// shows anything modal.
#pragma once

#include "ui/prompter.h"

#include <QDialog>
#include <QList>
#include <deque>
#include <functional>

namespace brindar::test {

class ScriptedPrompter final : public Prompter {
public:
    struct Call {
        QString kind;  // "message", "question", "text", "colour", "folder", "open", "save", "exec"
        QString title;
        QString text;
        Icon icon = Icon::Information;
    };
    QList<Call> calls;
    // Answers, first in first out; an empty queue answers No, or cancels.
    std::deque<bool> questions;
    std::deque<QString> texts;
    std::deque<QColor> colours;
    std::deque<QString> folders;
    std::deque<QString> fileNames;
    // Plays the user in the program's own dialogs; without it they are cancelled.
    std::function<int(QDialog&)> onExec;

    void message(QWidget*, Icon icon, const QString& text, const QString& title = {}) override
    {
        calls.append({QStringLiteral("message"), title, text, icon});
    }
    bool question(QWidget*, const QString& text, const QString& title = {}) override
    {
        calls.append({QStringLiteral("question"), title, text});
        return !questions.empty() && take(questions);
    }
    std::optional<QString> text(QWidget*, const QString& title, const QString& label, const QString& value,
                                int selected = -1) override
    {
        calls.append({QStringLiteral("text"), title, label + u'|' + value + u'|' + QString::number(selected)});
        return answer(texts);
    }
    std::optional<QColor> colour(QWidget*, const QColor& initial) override
    {
        calls.append({QStringLiteral("colour"), QString(), initial.name()});
        return answer(colours);
    }
    std::optional<QString> folder(QWidget*, const QString& title, const QString& start) override
    {
        calls.append({QStringLiteral("folder"), title, start});
        return answer(folders);
    }
    std::optional<QString> openFileName(QWidget*, const QString& title, const QString& start,
                                        const QString&) override
    {
        calls.append({QStringLiteral("open"), title, start});
        return answer(fileNames);
    }
    std::optional<QString> saveFileName(QWidget*, const QString& title, const QString& start,
                                        const QString&) override
    {
        calls.append({QStringLiteral("save"), title, start});
        return answer(fileNames);
    }
    int exec(QDialog& dialog) override
    {
        calls.append({QStringLiteral("exec"), dialog.windowTitle(), dialog.objectName()});
        return onExec ? onExec(dialog) : int(QDialog::Rejected);
    }

private:
    template <typename T>
    static T take(std::deque<T>& queue)
    {
        T value = std::move(queue.front());
        queue.pop_front();
        return value;
    }
    template <typename T>
    static std::optional<T> answer(std::deque<T>& queue)
    {
        if (queue.empty())
            return std::nullopt;
        return take(queue);
    }
};

}  // namespace brindar::test
