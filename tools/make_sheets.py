#!/usr/bin/env python3
"""Writes the example sheets: scenes that show one setting a cell, and the images that they read.

usage: tools/make_sheets.py [FOLDER]      (FOLDER: where the examples go, default examples/)

A sheet is a wall of square planes in front of a board that carries the captions, seen straight on. The
planes glow with their texture and reflect nothing, so the picture shows the texture's own colours.
Needs nothing but Python 3; the same script always writes the same bytes.
"""
import json
import math
import os
import struct
import sys
import zlib

FONT = {  # 5 by 7 pixels a glyph, a row a number, the left pixel in the highest bit
    " ": (0, 0, 0, 0, 0, 0, 0),
    "0": (14, 17, 19, 21, 25, 17, 14), "1": (4, 12, 4, 4, 4, 4, 14), "2": (14, 17, 1, 6, 8, 16, 31),
    "3": (30, 1, 1, 14, 1, 1, 30), "4": (2, 6, 10, 18, 31, 2, 2), "5": (31, 16, 30, 1, 1, 17, 14),
    "6": (6, 8, 16, 30, 17, 17, 14), "7": (31, 1, 2, 4, 8, 8, 8), "8": (14, 17, 17, 14, 17, 17, 14),
    "9": (14, 17, 17, 15, 1, 2, 12), "a": (0, 0, 14, 1, 15, 17, 15), "b": (16, 16, 30, 17, 17, 17, 30),
    "c": (0, 0, 15, 16, 16, 16, 15), "d": (1, 1, 15, 17, 17, 17, 15), "e": (0, 0, 14, 17, 31, 16, 14),
    "f": (6, 8, 30, 8, 8, 8, 8), "g": (0, 15, 17, 17, 15, 1, 14), "h": (16, 16, 30, 17, 17, 17, 17),
    "i": (4, 0, 12, 4, 4, 4, 14), "j": (2, 0, 6, 2, 2, 18, 12), "k": (16, 16, 18, 20, 24, 20, 18),
    "l": (12, 4, 4, 4, 4, 4, 14), "m": (0, 0, 26, 21, 21, 21, 21), "n": (0, 0, 30, 17, 17, 17, 17),
    "o": (0, 0, 14, 17, 17, 17, 14), "p": (0, 30, 17, 17, 30, 16, 16), "q": (0, 15, 17, 17, 15, 1, 1),
    "r": (0, 0, 22, 25, 16, 16, 16), "s": (0, 0, 15, 16, 14, 1, 30), "t": (8, 8, 30, 8, 8, 8, 6),
    "u": (0, 0, 17, 17, 17, 17, 15), "v": (0, 0, 17, 17, 17, 10, 4), "w": (0, 0, 17, 21, 21, 21, 10),
    "x": (0, 0, 17, 10, 4, 10, 17), "y": (0, 17, 17, 15, 1, 1, 14), "z": (0, 0, 31, 2, 4, 8, 31),
    "D": (30, 17, 17, 17, 17, 17, 30), "U": (17, 17, 17, 17, 17, 17, 14), "V": (17, 17, 17, 17, 17, 10, 4),
    "-": (0, 0, 0, 14, 0, 0, 0), "_": (0, 0, 0, 0, 0, 0, 31), ".": (0, 0, 0, 0, 0, 12, 12),
    ",": (0, 0, 0, 0, 12, 4, 8), ":": (0, 12, 12, 0, 12, 12, 0), "=": (0, 0, 31, 0, 31, 0, 0),
}
BOARD = (34, 36, 40)
CAPTION = (205, 208, 214)


class Picture:
    def __init__(self, width, height, color):
        self.width, self.height = width, height
        self.rows = [bytearray(bytes(color) * width) for _ in range(height)]

    def fill(self, x0, y0, x1, y1, color):
        span = bytes(color) * (x1 - x0)
        for y in range(y0, y1):
            self.rows[y][3 * x0:3 * x1] = span

    def text(self, x, y, words, size, color):
        for letter in words:
            drop = 2 * size if letter in "gpqy" else 0
            for row, bits in enumerate(FONT[letter]):
                for column in range(5):
                    if bits >> (4 - column) & 1:
                        self.fill(x + column * size, y + drop + row * size,
                                  x + (column + 1) * size, y + drop + (row + 1) * size, color)
            x += 6 * size

    def centred(self, x, y, words, size, color):
        self.text(x - (6 * len(words) - 1) * size // 2, y, words, size, color)

    def save(self, path):
        def chunk(kind, data):
            return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))
        header = struct.pack(">IIBBBBB", self.width, self.height, 8, 2, 0, 0, 0)
        pixels = b"".join(b"\0" + bytes(row) for row in self.rows)
        with open(path, "wb") as file:
            file.write(b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(pixels, 9)) + chunk(b"IEND", b""))


def hue(h, saturation, value):
    def channel(n):
        k = (n + h * 6) % 6
        return round(255 * value * (1 - saturation * max(0, min(k, 4 - k, 1))))
    return channel(5), channel(3), channel(1)


def numbered_grid(path, size=768, cells=4):
    """Cells numbered from the lower left, row by row; rows share a hue, columns a brightness."""
    picture = Picture(size, size, (0, 0, 0))
    cell = size // cells
    for row in range(cells):
        for column in range(cells):
            x, y = column * cell, size - (row + 1) * cell
            color = hue(row / cells, 0.55, 0.55 + 0.4 * column / (cells - 1))
            picture.fill(x, y, x + cell, y + cell, tuple(c // 3 for c in color))
            picture.fill(x + 3, y + 3, x + cell - 3, y + cell - 3, color)
            picture.centred(x + cell // 2, y + cell // 2 - 42, str(row * cells + column + 1), 12, (25, 25, 28))
    picture.save(path)


def glowing_plane(i, x, y, plugin):
    """A square that shows a texture and reflects nothing."""
    return {f"{plugin}_surface": {"type": "Surface", "params": {"diffuse": [0, 0, 0], "emission": plugin}},
            f"{plugin}_node": {"type": "Node", "params": {
                "geometry": "square", "material": f"{plugin}_surface",
                "transform": {"translate": [x, y, 0], "rotate": [90, 0, 0]}}}}


def sheet(folder, name, columns, cells, plugins, size, show=glowing_plane, samples=16, more_settings={}):
    """cells: [(caption, plugin)]. Writes the board's image and the scene. show(number, x, y, plugin) gives the
    nodes of a cell whose middle is at x, y."""
    rows = math.ceil(len(cells) / columns)
    pitch = 2.5
    scale = 100  # pixels of the board a unit
    width, height = columns * pitch, rows * pitch
    board = Picture(round(width * scale), round(height * scale), BOARD)
    scene = {
        "board": {"type": "Bitmap", "params": {"file": f"images/{name}_board.png"}},
        "board_surface": {"type": "Surface", "params": {"diffuse": [0, 0, 0], "emission": "board"}},
        "square": {"type": "Mesh", "params": {"shape": "plane"}},
        "board_node": {"type": "Node", "params": {
            "geometry": "square", "material": "board_surface",
            "transform": {"translate": [0, 0, -0.01], "rotate": [90, 0, 0], "scale": [width / 2, 1, height / 2]}}},
        "camera": {"type": "Camera", "params": {"position": [0, 0, 40], "target": [0, 0, 0],
                                                "fov": round(2 * math.degrees(math.atan(width / 2 / 40)), 5)}},
    }
    scene.update(plugins)
    for i, (caption, plugin) in enumerate(cells):
        x = (i % columns - (columns - 1) / 2) * pitch
        y = ((rows - 1) / 2 - i // columns) * pitch + 0.16
        if 12 * len(caption) > pitch * scale:
            sys.exit(f"{name}: the caption \"{caption}\" is wider than its cell; shorten it")
        board.centred(round((x + width / 2) * scale), round((height / 2 - y + 1.06) * scale), caption, 2, CAPTION)
        scene.update(show(i + 1, round(x, 4), round(y, 4), plugin))
    board.save(os.path.join(folder, "images", f"{name}_board.png"))
    settings = {"width": size, "height": round(size * height / width), "samples": samples, **more_settings}
    with open(os.path.join(folder, f"{name}.json"), "w") as file:
        file.write('{\n  "ombrix_scene": 1,\n  "settings": ' + json.dumps(settings) + ',\n  "plugins": {\n')
        file.write(",\n".join(f"    {json.dumps(key)}: {json.dumps(value)}" for key, value in scene.items()))
        file.write("\n  }\n}\n")


def placement_sheet(folder):
    placements = [
        ("as it is", {}),
        ("coverage 0.5", {"coverage_u": 0.5, "coverage_v": 0.5}),
        ("repeat 2", {"repeat_u": 2, "repeat_v": 2}),
        ("repeat 2, mirror", {"repeat_u": 2, "repeat_v": 2, "mirror_u": True, "mirror_v": True}),
        ("repeat 2, stagger", {"repeat_u": 2, "repeat_v": 2, "stagger": True}),
        ("half, rotate frame", {"coverage_u": 0.5, "coverage_v": 0.5, "rotate_frame": 0.5}),
        ("half, rotate UV", {"coverage_u": 0.5, "coverage_v": 0.5, "rotate_uv": 0.5}),
        ("noise 0.02", {"noise_u": 0.02, "noise_v": 0.02}),
        ("translate frame 0.25", {"translate_frame_u": 0.25, "translate_frame_v": 0.125}),
    ]
    plugins, cells = {}, []
    for i, (caption, params) in enumerate(placements):
        plugins[f"place{i + 1}"] = {"type": "UVWGenMayaPlace2dTexture", "params": params}
        plugins[f"grid{i + 1}"] = {"type": "Bitmap", "params": {"file": "images/numbered_grid.png", "uvwgen": f"place{i + 1}"}}
        cells.append((caption, f"grid{i + 1}"))
    sheet(folder, "placement_sheet", 3, cells, plugins, 900)


def noise_sheet(folder):
    kinds = [("perlin", 0), ("billow", 1), ("wave", 2), ("wispy", 3), ("space-time", 4)]
    cells, plugins = [], {"place": {"type": "UVWGenMayaPlace2dTexture", "params": {}}}

    def add(caption, type_name, params):
        name = f"noise{len(cells) + 1}"
        plugins[name] = {"type": type_name, "params": dict(params, uvwgen="place")}
        cells.append((caption, name))

    for dimensions in (3, 2):
        for label, number in kinds:
            add(f"{label}, {dimensions}D", "TexNoiseMaya", {"noise_type": number, "dimensions": dimensions})
    for label, number in (("linear", 0), ("smooth", 1), ("fast", 2), ("bubble", 3)):
        add(f"billow, {label}", "TexNoiseMaya", {"noise_type": 1, "falloff": number})
    add("billow, sparse", "TexNoiseMaya", {"noise_type": 1, "density": 0.6, "size_rand": 0.8, "spottyness": 0.8})
    for label, number in kinds[:4]:
        add(f"{label}, inflection", "TexNoiseMaya", {"noise_type": number, "inflection": True})
    add("perlin, implode 1", "TexNoiseMaya", {"noise_type": 0, "implode": 1, "implode_center": [0.5, 0.5, 0, 1]})
    for label, number in (("fractal", 0), ("cellular", 1), ("ridged", 2)):
        add(f"simplex, {label}", "TexSimplexNoise", {"noise_type": number, "scale": 8})
    add("billow, implode -1", "TexNoiseMaya", {"noise_type": 1, "implode": -1, "implode_center": [0.5, 0.5, 0, 1]})
    add("wispy, two colours", "TexNoiseMaya", {"noise_type": 3, "color1": [0.02, 0.05, 0.16], "color2": [0.95, 0.78, 0.45]})
    sheet(folder, "noise_sheet", 5, cells, plugins, 1250)


def stencil_sheet(folder):
    """The numbered grid laid over a cloudy background; rows of the grid share a hue."""
    plugins = {
        "place": {"type": "UVWGenMayaPlace2dTexture", "params": {}},
        "grid": {"type": "Bitmap", "params": {"file": "images/numbered_grid.png", "uvwgen": "place"}},
        "place_twice": {"type": "UVWGenMayaPlace2dTexture", "params": {"repeat_u": 2, "repeat_v": 2}},
        "grid_twice": {"type": "Bitmap", "params": {"file": "images/numbered_grid.png", "uvwgen": "place_twice"}},
        "clouds": {"type": "TexNoiseMaya", "params": {
            "noise_type": 0, "ratio": 0.6, "uvwgen": "place", "color1": [0.03, 0.03, 0.05], "color2": [0.16, 0.17, 0.22]}},
        "spots": {"type": "TexNoiseMaya", "params": {"noise_type": 1, "falloff": 1, "density": 3, "frequency": 6, "uvwgen": "place"}},
        "spots_mask": {"type": "ColorToFloat", "params": {"input": "spots", "channel": "red"}},
    }
    lowest_row = [1, 0.178, 0.178]  # the hue of the cells 1 to 4; the second row's is a quarter turn on
    key = {"key_masking": True, "color_key": lowest_row, "hue_range": 0.12, "sat_range": 1, "val_range": 1}
    settings = [
        ("as it is", {}),
        ("edge blend 0.1", {"edge_blend": 0.1}),
        ("edge blend 0.5", {"edge_blend": 0.5}),
        ("key: lowest row", key),
        ("positive key", dict(key, positive_key=True)),
        ("repeat 2, blend 0.3", {"image": "grid_twice", "uvwgen": "place_twice", "edge_blend": 0.3}),
        ("mask 0.5", {"mask": 0.5}),
        ("mask: a noise", {"mask": "spots_mask"}),
        ("invert, blend 0.3", {"invert": True, "edge_blend": 0.3}),
    ]
    cells = []
    for i, (caption, params) in enumerate(settings):
        plugins[f"stencil{i + 1}"] = {"type": "TexStencil", "params": dict(
            {"image": "grid", "default_color": "clouds", "uvwgen": "place"}, **params)}
        cells.append((caption, f"stencil{i + 1}"))
    sheet(folder, "stencil_sheet", 3, cells, plugins, 900)


def projection_sheet(folder):
    """The numbered grid projected onto the shader ball, which stands a little turned before the board."""
    kinds = [
        ("planar", "UVWPlanar", {}),
        ("spherical", "UVWSpherical", {}),
        ("cylindrical", "UVWCylindrical", {}),
        ("ball", "UVWBall", {}),
        ("cubic", "UVWCubic", {}),
        ("triplanar", "UVWTriPlanar", {}),
        ("planar, turned 30", "UVWPlanar", {"transform": {"rotate": [0, 0, 30]}}),
        ("planar, wrap off", "UVWPlanar", {"transform": {"scale": [0.6, 0.6, 1]}, "wrap": False}),
        ("spherical, 360, 180", "UVWSpherical", {"u_angle": 360, "v_angle": 180}),
    ]
    shapes = {"shell": "shaderball_shell", "foot": "shaderball_base"}
    scene = {name: {"type": "Mesh", "params": {"shape": shape}} for name, shape in shapes.items()}
    scene["foot_surface"] = {"type": "Surface", "params": {"diffuse": [0.16, 0.16, 0.165]}}
    scene["key"] = {"type": "DistantLight", "params": {"direction": [0.45, -0.6, -0.75], "angle": 6, "intensity": 0.75}}
    scene["fill"] = {"type": "DomeLight", "params": {"color": [0.9, 0.95, 1], "intensity": 0.45}}
    cells = []
    for i, (caption, kind, params) in enumerate(kinds):
        scene[f"projector{i + 1}"] = {"type": kind, "params": dict(params, space="object")}
        scene[f"grid{i + 1}"] = {"type": "Bitmap", "params": {"file": "images/numbered_grid.png", "uvwgen": f"projector{i + 1}"}}
        scene[f"projection{i + 1}"] = {"type": "MayaProjectionTex", "params": {
            "base_texture": f"grid{i + 1}", "uvwgen": f"projector{i + 1}", "nouvw_color": [0.35, 0.35, 0.35]}}
        scene[f"surface{i + 1}"] = {"type": "Surface", "params": {"diffuse": f"projection{i + 1}"}}
        cells.append((caption, f"surface{i + 1}"))

    def stand(i, x, y, surface):
        place = {"translate": [x, round(y + 0.15, 4), 0.95], "rotate": [18, 28, 0], "scale": [0.75, 0.75, 0.75]}
        return {f"ball{i}": {"type": "Node", "params": {"geometry": "shell", "material": surface, "transform": place}},
                f"foot{i}": {"type": "Node", "params": {"geometry": "foot", "material": "foot_surface", "transform": place}}}

    sheet(folder, "projection_sheet", 3, cells, scene, 1050, stand, 64)


def painted(path, color, size=128):
    """A picture by a function of the coordinates of a pixel's middle, 0 to 1 from the lower left; its channels are
    0 to 1 too."""
    picture = Picture(size, size, (0, 0, 0))
    for y in range(size):
        v = 1 - (y + 0.5) / size
        picture.rows[y] = bytearray(round(255 * channel) for x in range(size) for channel in color((x + 0.5) / size, v))
    picture.save(path)


def spectrum(u, v):
    """All hues from left to right, black below and white above."""
    return [c / 255 * min(2 * v, 1) + (1 - c / 255) * max(2 * v - 1, 0) for c in hue(u, 1, 1)]


def soft_disc(u, v):
    t = max(0, min(1, (0.45 - math.hypot(u - 0.5, v - 0.5)) / 0.3))
    return (t * t * (3 - 2 * t),) * 3


def utility_sheet(folder):
    """The spectrum composed with a soft disc, corrected, masked and converted."""
    def image(name, **params):
        return {"type": "Bitmap", "params": dict(
            {"file": f"images/{name}.png", "color_space": "linear", "wrap": "clamp"}, **params)}

    def channel(source, letter):
        return {"type": "ColorToFloat", "params": {"input": source, "channel": letter}}

    for name, color in (("spectrum", spectrum), ("soft_disc", soft_disc), ("uv_ramp", lambda u, v: (u, v, 0))):
        painted(os.path.join(folder, "images", f"{name}.png"), color)
    plugins = {"place": {"type": "UVWGenMayaPlace2dTexture", "params": {}}}
    for name in ("spectrum", "soft_disc", "uv_ramp"):
        plugins[name] = image(name, uvwgen="place")
    plugins.update({"disc": channel("soft_disc", "red"), "u": channel("uv_ramp", "red"), "v": channel("uv_ramp", "green")})
    cells = []

    def add(caption, type_name, **params):
        name = f"cell{len(cells) + 1}"
        plugins[name] = {"type": type_name, "params": params}
        cells.append((caption, name))

    operations = ("add", "subtract", "blend", "multiply", "screen", "overlay", "difference", "dodge", "burn")
    for factor in (0.5, 1):
        for number, label in enumerate(operations):
            add(f"{label} {factor}", "TexComposite", color_a="spectrum", color_b="soft_disc", operation=number, factor=factor)

    for caption, params in (
            ("hue shift 120", {"hue_shift": 120}),
            ("sat gain 0.3", {"sat_gain": 0.3}),
            ("val gain 0.5", {"val_gain": 0.5}),
            ("col gain", {"col_gain": [1, 0.6, 0.2]}),
            ("col offset", {"col_offset": [0, 0, 0.4]}),
            ("col gamma 2.2", {"col_gamma": [2.2, 2.2, 2.2]}),
            ("clamp 0.3, 0.7", {"col_clamp": 1, "col_clamp_min": [0.3, 0.3, 0.3], "col_clamp_max": [0.7, 0.7, 0.7]}),
            ("alpha 0.5, divided", {"in_alpha": 0.5, "unpremultiply_input": 1}),
            ("alpha 0.5, times", {"in_alpha": 0.5, "premultiply_result": 1})):
        add(caption, "TexColorCorrect", in_color="spectrum", **params)

    paint = [0.05, 0.1, 0.3]
    add("mask alpha: disc", "TexColorMask", in_color="spectrum", mask=paint, mask_alpha="disc")
    add("mask luminance", "TexColorMask", in_color="spectrum", mask="soft_disc", mask_alpha_is_luminance=1)
    plugins["masked_alpha"] = channel(cells[-2][1], "alpha")
    add("the alpha it leaves", "FloatsToColor", red="masked_alpha", green="masked_alpha", blue="masked_alpha")
    plugins["float_masked"] = {"type": "TexFloatMask", "params": {"in_float": "u", "mask": "disc"}}
    add("float mask", "FloatsToColor", red="float_masked", green="float_masked", blue="float_masked")
    plugins["float_corrected"] = {"type": "TexFloatCorrect", "params": {
        "in_float": "u", "gain": 1, "offset": -0.5, "clamp": 1, "clamp_max": 0.25}}
    add("float clamp 0.25", "FloatsToColor", red="float_corrected", green="float_corrected", blue="float_corrected")
    plugins["luminance"] = {"type": "TexLuminance", "params": {"input": "spectrum"}}
    add("luminance", "FloatsToColor", red="luminance", green="luminance", blue="luminance")
    plugins["degrees"] = {"type": "TexMayaConversion", "params": {"input": "u", "conversion_factor": 360}}
    plugins["hsv"] = {"type": "FloatsToColor", "params": {"red": "degrees", "green": "v", "blue": 1}}
    add("hsv to rgb", "TexHSVToRGB", inHsv="hsv")
    plugins["as_hsv"] = {"type": "TexRGBToHSV", "params": {"inRgb": "spectrum"}}
    add("to hsv and back", "TexHSVToRGB", inHsv="as_hsv")
    add("blend by the disc", "TexComposite", color_a="spectrum", color_b=paint, operation=2, factor="disc")
    sheet(folder, "utility_sheet", 9, cells, plugins, 1800)


def blackbody_sheet(folder):
    # The colour space is the scene's, so each space has a scene of its own.
    for name, more_settings in (("blackbody_sheet", {}), ("blackbody_sheet_space_0", {"color_space": 0}),
                                ("blackbody_sheet_space_2", {"color_space": 2})):
        plugins, cells = {}, []
        for kelvin in range(1000, 12001, 1000):
            plugin = f"glow{kelvin}"
            plugins[plugin] = {"type": "TexTemperatureToColor", "params": {"input": [1, 1, 1], "temperature": kelvin}}
            cells.append((f"{kelvin} kelvin", plugin))
        sheet(folder, name, 4, cells, plugins, 1000, more_settings=more_settings)


def main():
    folder = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(__file__), "..", "examples")
    os.makedirs(os.path.join(folder, "images"), exist_ok=True)
    numbered_grid(os.path.join(folder, "images", "numbered_grid.png"))
    placement_sheet(folder)
    noise_sheet(folder)
    stencil_sheet(folder)
    projection_sheet(folder)
    utility_sheet(folder)
    blackbody_sheet(folder)


if __name__ == "__main__":
    main()
