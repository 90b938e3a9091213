// The dialogs that the program shows. Their texts are plain and of limited length.
#pragma once

#include <QMessageBox>
#include <memory>
#include <string>

class QFileDialog;

// A message with one button, and with its cause below the text unless that is "".
std::unique_ptr<QMessageBox> makeMessage(const std::string& text, const std::string& cause, QWidget* parent);

// A message that `what`, an address or a path, could not be opened, with a button that copies it.
std::unique_ptr<QMessageBox> makeCannotOpen(const QString& message, const std::string& what, QWidget* parent);

// Asks whether to replace the file at path; the result is QMessageBox::Yes if so.
std::unique_ptr<QMessageBox> makeReplaceQuestion(const QString& path, QWidget* parent);

// path, with the extension of the suggested name if it has none of its own: one to eight letters and digits
// after a dot, and not digits alone.
QString withExtension(const QString& path, const std::string& suggested);

// A save dialog that starts in folder with this name, and doesn't ask about an existing file. filter is as in
// Platform::AskSavePath. The title shows step: which of how many files is saved, "" for a single one.
std::unique_ptr<QFileDialog> makeSaveDialog(const std::string& filter, const std::string& name,
                                            const QString& folder, const std::string& step, QWidget* parent);
