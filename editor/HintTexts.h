#pragma once

namespace ormund {

// How the hints write a value of their control. `text` has room for 256 bytes.
void percentText(float value, char* text);      // 0 to 1 as "38 %"
void hundredthsText(float value, char* text);   // 0 to 1 as "38"
void panText(float value, char* text);          // "24 left", "centre", "24 right"
void integerText(float value, char* text);      // a whole number, truncated
void countText(float value, char* text);        // the same, of an index that counts from 0
void noteNameText(float value, char* text);     // of a MIDI note: "C4"
void gateMultipleText(float value, char* text); // of its index: "0.125", "3"

} // namespace ormund
