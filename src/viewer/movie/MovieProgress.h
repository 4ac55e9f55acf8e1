#pragma once

class MovieJob;
class QWidget;

/// Shows the progress window (frmMovie) of `job`, from ProgressBegins to ProgressEnds. It goes with
/// the window `parent`, which may be null or be gone by then. A user who closes it stops the job.
void showProgressOf(MovieJob& job, QWidget* parent);
