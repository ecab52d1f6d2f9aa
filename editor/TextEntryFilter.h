#pragma once

class IParam;

// What a value field accepts while the user types: every character from the acceptable set (null:
// any), at most maxLength characters (0: unlimited), an integer value of at most maxValue (0:
// unlimited). Signs pass anywhere: characters are checked, not number syntax.
struct TextEntryFilter {
  const char* mAcceptable = nullptr;
  int mMaxLength = 0;
  int mMaxValue = 0;

  // Digits and signs for boolean, integer and enumeration parameters, with the decimal point for
  // doubles, at most maxLength characters; anything for no parameter or another type.
  static TextEntryFilter ForParam(const IParam* param, int maxLength);
  bool Accepts(const char* text) const;
};
