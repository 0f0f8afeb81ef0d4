#pragma once

#include "wizards/basic/BasicSetup.h"
#include "wizards/frame/WizardPicture.h"

namespace quorvik
{

// The pictures of the Basic Setup Mentor, each on a WizardPicture's canvas; they show the answers so far.
void DrawBasicIntro(QPainter &painter, const Ink &ink);
void DrawDriveModel(QPainter &painter, const Ink &ink, const BasicSetup &setup);
void DrawOperatingMode(QPainter &painter, const Ink &ink, const BasicSetup &setup);
void DrawNameplate(QPainter &painter, const Ink &ink, const BasicSetup &setup);
/** The jumpers stand as they sit on the board with their present values. */
void DrawFeedback(QPainter &painter, const Ink &ink, const BasicSetup &setup, const TachJumpers &jumpers);
void DrawMaxSpeed(QPainter &painter, const Ink &ink, const BasicSetup &setup);
void DrawReferences(QPainter &painter, const Ink &ink, const BasicSetup &setup);
void DrawStartStop(QPainter &painter, const Ink &ink, const BasicSetup &setup);
void DrawCurrentLimits(QPainter &painter, const Ink &ink, const BasicSetup &setup);

} // namespace quorvik
