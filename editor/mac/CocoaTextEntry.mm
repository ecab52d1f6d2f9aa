// The value field's Cocoa pieces, UI thread only.
#import "editor/mac/CocoaTextEntry.h"

@implementation CocoaFormatter_vTarn_rtas

- (id)initWithFilter:(const TextEntryFilter&)filter {
  if ((self = [super init])) {
    mAcceptable = filter.mAcceptable, mMaxLength = filter.mMaxLength, mMaxValue = filter.mMaxValue;
  }
  return self;
}

- (NSString*)stringForObjectValue:(id)value {
  return [value isKindOfClass:[NSString class]] ? value : [value description];
}

- (BOOL)getObjectValue:(id*)value forString:(NSString*)string errorDescription:(NSString**)error {
  if (value) *value = string;
  return YES;
}

- (BOOL)isPartialStringValid:(NSString*)partial
            newEditingString:(NSString**)replacement
            errorDescription:(NSString**)error {
  return TextEntryFilter{mAcceptable, mMaxLength, mMaxValue}.Accepts([partial UTF8String]);
}

@end

@implementation CocoaTextField_vTarn_rtas

- (BOOL)textView:(NSTextView*)textView
    shouldChangeTextInRange:(NSRange)range
          replacementString:(NSString*)replacement {
  NSFormatter* formatter = [self formatter];
  if (!formatter || !replacement) return YES;  // no filter, or a change of attributes only
  NSString* edited = [[textView string] stringByReplacingCharactersInRange:range
                                                                withString:replacement];
  return [formatter isPartialStringValid:edited newEditingString:NULL errorDescription:NULL];
}

@end
