// The value field's Cocoa pieces, UI thread only: its input filter and the field itself.
#pragma once

#import <Cocoa/Cocoa.h>

#include "editor/TextEntryFilter.h"

// The field's input filter as a formatter: a partial string is valid when the core's filter
// accepts it.
@interface CocoaFormatter_vTarn_rtas : NSFormatter {
  const char* mAcceptable;  // null: any character
  int mMaxLength;           // 0: unlimited
  int mMaxValue;            // 0: unlimited
}
- (id)initWithFilter:(const TextEntryFilter&)filter;
@end

// A single-line field that asks its formatter about every edit as it is typed: some AppKits ignore
// a formatter's refusal of a partial string, so the field refuses the edit itself.
@interface CocoaTextField_vTarn_rtas : NSTextField
@end
