#pragma once

#include "shared/Timer.h"
#include "widgets/ElidedLabel.h"

/// The banner over the top edge of the image (`lblURl`): shows the camera's host while the mouse
/// is near that edge. Clicking it asks for the text shown to be opened.
class UrlBanner : public ElidedLabel
{
    Q_OBJECT

public:
    /// The mouse shows the banner down to this y position in the image, in pixels.
    static constexpr int BandPx = 16;
    static constexpr int CheckMs = 1'000;

    explicit UrlBanner(QWidget* parent);

    /// The mouse moved over the image, with the buttons of ImageView::MouseMove. `url` is the
    /// camera key on show; without one the banner shows the address of the directory's web site.
    void mouseMovedOverImage(int button, int y, const QString& url);

    /// Hides the banner and forgets its text, so that it next shows the camera then on show.
    void hideAndForget();

signals:
    void OpenRequested(const QString& address);

private:
    void tick();

    Timer m_tmrTop;
};
