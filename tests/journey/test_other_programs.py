"""What the app asks of other programs: a mail program that takes a draft, and a browser that shows the help page."""

import email
import email.policy
import os
import pathlib
import re
import urllib.parse
import xml.etree.ElementTree as ElementTree

from journey import FILM_A, Journey
from processes import until


class Registered:
    """A script registered for some types of a home, the way installed programs are: by a desktop entry, which the
    home's list of defaults names. `takes` says what it is given: "%f", a file, or "%u", an address. It takes down its arguments, and keeps a copy of a file among them."""

    def __init__(self, home, name, types, takes):
        self.home = home
        self._folder = os.path.join(home.path, name)
        os.makedirs(self._folder)
        self._write_script()
        self._write_entry(name, types, takes)
        self._add_defaults(name, types)

    def _write_script(self):
        # The arguments appear all at once and last, so that whoever sees them sees the copy too.
        script = ('#!/bin/sh\nfolder=$(dirname "$0")\n[ ! -f "$1" ] || cp "$1" "$folder/copy"\n'
                  'env > "$folder/environment"\n'
                  'printf "%s\\n" "$@" > "$folder/unfinished"\nmv "$folder/unfinished" "$folder/arguments"\n')
        self._script = os.path.join(self._folder, "program")
        with open(self._script, "w", encoding="ascii") as file:
            file.write(script)
        os.chmod(self._script, 0o755)

    def _write_entry(self, name, types, takes):
        folder = os.path.join(self.home.environment["XDG_DATA_HOME"], "applications")
        os.makedirs(folder, exist_ok=True)
        with open(os.path.join(folder, f"{name}.desktop"), "w", encoding="ascii") as file:
            file.write(f"[Desktop Entry]\nType=Application\nName={name}\nExec={self._script} {takes}\n"
                       f"MimeType={';'.join(types)};\n")

    def _add_defaults(self, name, types):
        with open(os.path.join(self.home.environment["XDG_CONFIG_HOME"], "mimeapps.list"), "a", encoding="ascii") as file:
            file.write("[Default Applications]\n" + "".join(f"{kind}={name}.desktop\n" for kind in types))

    def arguments(self):
        """What it was started with, once it was; waits for that."""
        path = os.path.join(self._folder, "arguments")
        until(lambda: os.path.exists(path), f"{path} to be written")
        return pathlib.Path(path).read_text("utf-8").splitlines()

    @property
    def environment(self):
        """Names of the variables that it got."""
        lines = pathlib.Path(self._folder, "environment").read_text("utf-8", "replace").splitlines()
        return {line.partition("=")[0] for line in lines}

    @property
    def was_started(self):
        return os.path.exists(os.path.join(self._folder, "arguments"))

    @property
    def copy(self):
        return pathlib.Path(self._folder, "copy").read_bytes()


class OtherPrograms(Journey):
    def setUp(self):
        super().setUp()
        self.home = self.surroundings.new_home(FILM_A.title)
        self.home.know_the_app()

    def start_on_a_bare_system(self):
        """Of the programs that this machine has, none is offered."""
        nothing = os.path.join(self.home.path, "nothing")
        os.makedirs(nothing, exist_ok=True)
        self.start(self.home, XDG_DATA_DIRS=nothing)

    def check_environment(self, program):
        """What the app sets for its own libraries is of no concern to other programs."""
        self.assertIn("XDG_DATA_HOME", program.environment)
        self.assertNotIn("QT_XCB_GL_INTEGRATION", program.environment)


class Mail(OtherPrograms):
    def open_info(self):
        self.program.press("Info")
        self.program.wait_for("Show the tutorial")  # the last thing on that screen

    def write(self):
        """Presses the button until the app says that it was pressed."""
        self.place = self.program.mark()
        self.program.press_until("Write to us", lambda: "contattaci" in self.program.lines[self.place :])

    def test_a_draft_is_handed_to_the_mail_program(self):
        mail = Registered(self.home, "letters", ["message/rfc822", "x-scheme-handler/mailto"], "%f")
        self.start_on_a_bare_system()
        self.open_info()
        self.write()
        arguments = mail.arguments()
        self.assertEqual(len(arguments), 1, arguments)
        self.check_draft(mail.copy)
        self.check_environment(mail)
        self.check_info_is_back()

    def check_draft(self, draft):
        self.assertNotIn(b"\n", draft.replace(b"\r\n", b""), "every line ends with CR and LF")
        message = email.message_from_bytes(draft, policy=email.policy.default)
        self.assertEqual(message["X-Unsent"], "1")
        self.assertEqual([address.domain != "" for address in message["To"].addresses], [True])
        self.assertIsNone(message["Subject"])
        self.assertEqual(message.get_content_type(), "multipart/alternative")
        plain, html = message.iter_parts()
        self.assertEqual([plain.get_content_type(), html.get_content_type()], ["text/plain", "text/html"])
        self.assertEqual(plain.get_content().strip(), "Help from Quillop ios.")
        self.assertEqual(html.get_content().strip(), "<p>Help from Quillop ios.</p>")
        self.assertEqual(message.defects, [])

    def check_info_is_back(self):
        """The draft's screen has closed itself: the info screen works again, and the main screen never heard of it."""
        self.program.press_until("Close", lambda: self.program.find("Choose videos"))
        self.assertEqual(self.program.lines[self.place :], ["contattaci"])

    def test_without_a_mail_program_nothing_is_shown_or_started(self):
        browser = Registered(self.home, "browser", ["text/html", "x-scheme-handler/https"], "%u")
        self.start_on_a_bare_system()
        self.open_info()
        shown, running = self.program.root.shown_names(), self.program.others_running()
        self.write()
        self.assert_nothing_is_said_for_a_while(self.program, 1.0)
        self.assertEqual(self.program.root.shown_names(), shown)
        self.assertEqual(self.program.others_running(), running)
        self.assertFalse(browser.was_started)
        self.check_info_is_back()


class Help(OtherPrograms):
    def test_the_empty_library_leads_to_a_page_in_the_browser(self):
        browser = Registered(self.home, "browser", ["text/html", "x-scheme-handler/https", "x-scheme-handler/http"], "%u")
        os.unlink(os.path.join(self.home.videos, FILM_A.title + ".mp4"))
        self.start_on_a_bare_system()
        self.program.press("Choose videos")
        self.program.press_until("Tutorial for add Movies", lambda: browser.was_started)
        address, = browser.arguments()
        page = pathlib.Path(self.surroundings.seen_from_here(urllib.parse.unquote(urllib.parse.urlparse(address).path)))
        self.assertIn("Videos", page.read_text("utf-8"))
        self.check_picture(page)
        self.check_environment(browser)

    def check_picture(self, page):
        found = re.findall(r'<img [^>]*src="([^"]+)"', page.read_text("utf-8"))
        self.assertEqual(len(found), 1, found)
        picture = ElementTree.parse(page.parent / found[0]).getroot()
        self.assertEqual(picture.tag, "{http://www.w3.org/2000/svg}svg")
        self.assertGreater(len(list(picture.iter())), 5)
