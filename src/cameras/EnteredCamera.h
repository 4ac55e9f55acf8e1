#pragma once

#include <QString>

/// A camera as a person enters it, field by field; the directory is offered the same fields.
struct EnteredCamera
{
    QString name;
    /// The address as typed, with or without its scheme.
    QString url;
    /// One request header line, or empty.
    QString extraHeader;
    QString category;
};
