// The controls that hold a text. Texts are bytes, taken to be UTF-8.
#pragma once

#include <utility>

#include "runtime/Control.h"
#include "runtime/Platform.h"

class Label : public Control {
 public:
  explicit Label(Window& owner) : Control(owner, ControlKind::Label) {}
  const std::string& Text() const { return text_; }
  void SetText(const std::string& text) { Set(text_, text); }

 private:
  void TakeInitialText(const std::string& text) override { text_ = text; }
  std::string text_;
};

// One line of any length: line breaks and NULs in what is put into it are dropped.
class TextField : public Control {
 public:
  explicit TextField(Window& owner) : Control(owner, ControlKind::TextField) {}
  const std::string& Text() const { return text_; }
  void SetText(const std::string& text);
  // The person puts text in place of what stood there; the focus is here then.
  void PersonTypes(const std::string& text);

  // The selection, in bytes from 0, kept inside the text; and one step of undoing. They serve
  // the editing commands where no screen has a field of its own.
  std::size_t SelStart = 0;
  std::size_t SelLength = 0;
  void PersonEdits(EditAction action, std::string& clipboard);

 private:
  void TakeInitialText(const std::string& text) override { text_ = text; }
  void PutOverSelection(const std::string& text);
  std::string text_;
  std::string undo_;
};

// One text buffer of any size. Take hands the text out and leaves "".
class TextArea : public Control {
 public:
  explicit TextArea(Window& owner) : Control(owner, ControlKind::TextArea) {}
  const std::string& Text() const { return text_; }
  void SetText(std::string text) { Set(text_, std::move(text)); }
  void AppendText(const std::string& text);
  std::string Take();

 private:
  void TakeInitialText(const std::string& text) override { text_ = text; }
  std::string text_;
};
