#include "playback/ViewController.h"

#include "platform/foundation/ClassRegistry.h"

namespace {

const ClassRegistration screenRegistration = registerClass<ViewController>("ViewController");

// Film 2's close line lacks film 1's hyphens on purpose.
constexpr FilmConstants film1Constants{
    .number = 1,
    .pan = -1.0F,
    .loadLine = "faccio partire video 1",
    .tapLine = "toccatoFilm1",
    .shownLine = "1     la vista non è stata rimossa",
    .closeLine = "----- ChiudiFilm1",
    .tapped = &ViewController::toccatoFilm1,
    .close = &ViewController::chiudiFilm1,
};
constexpr FilmConstants film2Constants{
    .number = 2,
    .pan = 1.0F,
    .loadLine = "faccio partire video 2",
    .tapLine = "toccatoFilm2",
    .shownLine = "2     la vista non è stata rimossa",
    .closeLine = "ChiudiFilm2",
    .tapped = &ViewController::toccatoFilm2,
    .close = &ViewController::chiudiFilm2,
};

template <class... Fields>
void releaseInOrder(Fields&... fields) {
  (fields.reset(), ...);
}

}  // namespace

ViewController::ViewController(const std::optional<std::string>& nibName, NSBundle* bundle)
    : UIViewController(nibName, bundle), popTip(make<PopTip>()) {}

ViewController::ViewController(const NSCoder& coder) : UIViewController(coder), popTip(make<PopTip>()) {}

ViewController::~ViewController() {
  releaseInOrder(vistaFilm1, vistaFilm2, playerFilm1SinistraAudio, playerFilm2DestraAudio, playerFilm1SinistraVideo,
                 playerFilm2DestroVideo, timerVideo1, timerVideo2, layer1, layer2, timer1, timer2,
                 vistaControlliFilm1, immagineBarraControlli1, bottonePlayPausaFilm1, bottoneChiudiFilm1,
                 volumeSlider1, progressSlider1, vistaControlliFilm2, immagineBarraControlli2, bottonePlayPausaFilm2,
                 bottoneChiudiFilm2, volumeSlider2, progressSlider2, popTip);
}

InterfaceTable ViewController::interfaceTable() {
  return InterfaceTable()
      .outlet("vistaFilm1", vistaFilm1)
      .outlet("vistaFilm2", vistaFilm2)
      .outlet("vistaControlliFilm1", vistaControlliFilm1)
      .outlet("immagineBarraControlli1", immagineBarraControlli1)
      .outlet("bottonePlayPausaFilm1", bottonePlayPausaFilm1)
      .outlet("bottoneChiudiFilm1", bottoneChiudiFilm1)
      .outlet("volumeSlider1", volumeSlider1)
      .outlet("progressSlider1", progressSlider1)
      .outlet("vistaControlliFilm2", vistaControlliFilm2)
      .outlet("immagineBarraControlli2", immagineBarraControlli2)
      .outlet("bottonePlayPausaFilm2", bottonePlayPausaFilm2)
      .outlet("bottoneChiudiFilm2", bottoneChiudiFilm2)
      .outlet("volumeSlider2", volumeSlider2)
      .outlet("progressSlider2", progressSlider2)
      .action("listaVideo:", this, &ViewController::listaVideo)
      .action("info:", this, &ViewController::info)
      .action("playPausaFilm:", this, &ViewController::playPausaFilm)
      .action("chiudiFilm:", this, &ViewController::chiudiFilm)
      .action("cambiaVolumeFilm:", this, &ViewController::cambiaVolumeFilm)
      .action("muovitiDentroIlFilm:", this, &ViewController::muovitiDentroIlFilm);
}

FilmSlot ViewController::film(long number) {
  if (number == 1) {
    return {film1Constants, vistaFilm1, playerFilm1SinistraAudio, playerFilm1SinistraVideo, timerVideo1,
            layer1,         timer1,     vistaControlliFilm1,      bottonePlayPausaFilm1,    volumeSlider1,
            progressSlider1};
  }
  return {film2Constants, vistaFilm2,          playerFilm2DestraAudio, playerFilm2DestroVideo, timerVideo2,    layer2,
          timer2,         vistaControlliFilm2, bottonePlayPausaFilm2,  volumeSlider2,          progressSlider2};
}
