// The About window: a picture, the name, the version and what the program is for.
#pragma once

#include "runtime/Buttons.h"
#include "runtime/TextControls.h"
#include "runtime/Window.h"

class aboutWin : public Window {
 public:
  aboutWin();
  // Creates the window, hidden, at the first call and again after it was closed.
  static aboutWin& Get() { return GetOrMake<aboutWin>("aboutWin", Opening::AtOnce); }

  Canvas Canvas1{*this};
  Label Label2{*this};
  Label Label3{*this};
  Label Label4{*this};
  Label Label1{*this};
  BevelButton BevelButton1{*this};

  void BevelButton1_Action();
};

// The program's pictures, by the names of their files among the resources.
inline constexpr char Ravelyn100[] = "Ravelyn1001.png";
inline constexpr char Ravelyn250[] = "Ravelyn250.png";
