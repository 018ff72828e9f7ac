#pragma once

class QColorDialog;

namespace Ombrel {

// The process's one colour chooser: a non-modal QColorDialog with its alpha
// channel, without buttons (its changes apply at once, so there is nothing to
// cancel) and always Qt's own, so that every change arrives while it is open
// on every desktop. It is made at its first use and lives until the
// application ends; its colour changes and its closing reach
// SharedColorPanel.
QColorDialog *sharedColorDialog();

// Makes SharedColorPanel open that dialog. Cheap, and only the first call
// counts: every widget that opens the chooser calls it when made.
void installSharedColorDialog();

} // namespace Ombrel
