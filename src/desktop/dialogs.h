// The dialogs that the program shows. All texts in them are plain and bounded.
#pragma once

#include <QMessageBox>
#include <memory>
#include <string>

class QFileDialog;

// A message with one button, and below it its cause, if it has one.
std::unique_ptr<QMessageBox> makeMessage(const std::string& text, const std::string& cause, QWidget* parent);

// A message that something, an address or a path, could not be opened, with a button that copies it.
std::unique_ptr<QMessageBox> makeCannotOpen(const QString& words, const std::string& what, QWidget* parent);

// The question whether to replace the file at path; its result is QMessageBox::Yes or not.
std::unique_ptr<QMessageBox> makeReplaceQuestion(const QString& path, QWidget* parent);

// path, with the ending of the suggested name where it has none: one to eight letters and digits after a dot,
// not digits alone.
QString withEnding(const QString& path, const std::string& suggested);

// A save dialog, without a question about a file that exists, that starts in folder with this name. filter is
// as Platform::AskSavePath takes it; step says in the title which of how many files it is for, "" for the
// only one.
std::unique_ptr<QFileDialog> makeSaveDialog(const std::string& filter, const std::string& name,
                                            const QString& folder, const std::string& step, QWidget* parent);
