"""A host in Python: picks a service in the window's own logic, draws it, and exports a part of it. No display needed.

python3 host.py [folder for the image]"""

import pathlib
import sys
import tempfile

import vlclientui


def look(window):
    """In a person's place."""
    print("The window shows", window.pages[0].rows)


def main() -> int:
    folder = pathlib.Path(sys.argv[1] if len(sys.argv) > 1 else tempfile.mkdtemp())
    with vlclientui.headless() as session:
        session.when_window_appears(look)
        dialog = session.create("ImageServicesDialog").query("IOVLImageServicesDialog")
        dialog.Init("", session.server_client())
        dialog.ShowDialog()

        geoid = session.open("ImageService://127.0.0.1/World/EGM96_Geoid")
        heights = geoid.drawing().read(360, 180, extent=(5.0, 43.0, 17.0, 49.0))
        print(f"Heights of the geoid over the Alps: {heights.min():.1f} to {heights.max():.1f} m")
        written = vlclientui.export(geoid, folder / "alps.tif", extent=(5.0, 43.0, 17.0, 49.0), columns=240, rows=120)
        print("Wrote", written)
    return 0


if __name__ == "__main__":
    sys.exit(main())
