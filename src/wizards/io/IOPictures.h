#pragma once

#include "wizards/frame/WizardPicture.h"
#include "wizards/io/IOSetup.h"

namespace quorvik
{

// The pictures of the I/O Mentor; they show the answers so far.
PictureFile BranchPicture(const IOSetup &setup);
void DrawInputTerminals(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawOutputTerminals(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawDestination(QPainter &painter, const Ink &ink, const IOSetup &setup);
void DrawSource(QPainter &painter, const Ink &ink, const IOSetup &setup);
PictureFile AnalogTypePicture(const IOSetup &setup);
PictureFile CalibrationPicture(const IOSetup &setup);
PictureFile InputValuesPicture(const IOSetup &setup);
PictureFile OutputValuesPicture(const IOSetup &setup);

} // namespace quorvik
