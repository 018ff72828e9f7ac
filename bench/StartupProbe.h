#pragma once

class QWidget;

// Prints, once the window has been painted for the first time, the wall
// clock in nanoseconds ("painted-ns N") and the resident memory in kB
// ("rss-kb N"), then ends the process. A startup benchmark launches the
// program at a known time and reads these two lines.
void exitAfterFirstPaint(QWidget *window);
