#pragma once

#include "wizards/frame/WizardPicture.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

// The pictures of the I/O Mentor, each on a WizardPicture's canvas; they show the answers so far.
void DrawBranch(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawInputTerminals(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawOutputTerminals(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawDestination(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawSource(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawAnalogType(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawCalibration(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawInputValues(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawOutputValues(QPainter &painter, const Ink &ink, const IOSetup &setup);
/** The intro's: both branches alike. */
void DrawInputsAndOutputs(QPainter &painter, const Ink &ink);

} // namespace quorvik
