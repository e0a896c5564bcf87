# SPDX-License-Identifier: MIT
# The sentences of the micro speech model's grammar in three languages, as they ought to be written and as they are spoken.
import os, random, sys
sys.path.append(os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "micro-model"))                # behind our own modules
import grammar as G

LANGUAGES = ("en", "de", "ru")

# ---- words: (English, German..., Russian...) ----
DAYS = [("Monday", "Montag", "в понедельник"), ("Tuesday", "Dienstag", "во вторник"), ("Wednesday", "Mittwoch", "в среду"),
        ("Thursday", "Donnerstag", "в четверг"), ("Friday", "Freitag", "в пятницу")]
WHEN = [("today", "heute", "сегодня"), ("tomorrow", "morgen", "завтра"), ("tonight", "heute Nacht", "сегодня ночью"),
        ("next week", "nächste Woche", "на следующей неделе"), ("this morning", "heute Morgen", "сегодня утром"),
        ("this afternoon", "heute Nachmittag", "сегодня днём"), ("this evening", "heute Abend", "сегодня вечером")] \
     + [("on " + e, "am " + d, r) for e, d, r in DAYS]
# German: noun and gender; Russian: noun and gender (the accusative of all of them is the nominative)
OBJ = [("report", "Bericht", "m", "отчёт", "m"), ("letter", "Brief", "m", "письмо", "n"), ("invoice", "Rechnung", "f", "счёт", "m"),
       ("contract", "Vertrag", "m", "договор", "m"), ("message", "Nachricht", "f", "сообщение", "n"),
       ("document", "Dokument", "n", "документ", "m"), ("list", "Liste", "f", "список", "m"), ("plan", "Plan", "m", "план", "m")]
FOOD = [("milk", "Milch", "молоко", "молоко"), ("bread", "Brot", "хлеб", "хлеб"), ("coffee", "Kaffee", "кофе", "кофе"),
        ("tea", "Tee", "чай", "чай"), ("apples", "Äpfel", "яблоки", "яблоки"), ("water", "Wasser", "вода", "воду"),
        ("paper", "Papier", "бумага", "бумагу"), ("butter", "Butter", "масло", "масло")]
NUMS = [("three", "drei", "три"), ("five", "fünf", "пять"), ("six", "sechs", "шесть"), ("seven", "sieben", "семь"),
        ("nine", "neun", "девять"), ("ten", "zehn", "десять"), ("eleven", "elf", "одиннадцать"), ("twelve", "zwölf", "двенадцать")]
ADJ = [("short", "kurz", "коротк", "ий", "ое"), ("long", "lang", "длинн", "ый", "ое"), ("new", "neu", "нов", "ый", "ое"),
       ("important", "wichtig", "важн", "ый", "ое")]
PLACE = [("in the office", "im Büro", "в офисе"), ("at home", "zu Hause", "дома"), ("on the phone", "am Telefon", "у телефона"),
         ("in the meeting", "in der Besprechung", "на встрече"), ("in the kitchen", "in der Küche", "на кухне"),
         ("on the train", "im Zug", "в поезде")]
STATE = [("ready", "fertig", "готов", "готово"), ("late", "verspätet", "задерживается", "задерживается"),
         ("important", "wichtig", "важен", "важно"), ("finished", "abgeschlossen", "закончен", "закончено"),
         ("good", "gut", "хороший", "хорошее")]
# English, German infinitive, Russian imperative, first person, infinitive
VERB = [("send", "schicken", "отправьте", "отправлю", "отправить"), ("read", "lesen", "прочитайте", "прочитаю", "прочитать"),
        ("check", "prüfen", "проверьте", "проверю", "проверить"), ("print", "drucken", "распечатайте", "распечатаю", "распечатать"),
        ("finish", "beenden", "закончите", "закончу", "закончить"), ("open", "öffnen", "откройте", "открою", "открыть"),
        ("bring", "bringen", "принесите", "принесу", "принести"), ("write", "schreiben", "напишите", "напишу", "написать")]
WEATHER = [("good", "schön", "хорошая"), ("bad", "schlecht", "плохая"), ("cold", "kalt", "холодная"), ("warm", "warm", "тёплая")]
WOMEN = {"Anna", "Maria", "Julia"}
NOM = {"m": "der", "f": "die", "n": "das"}; ACC = {"m": "den", "f": "die", "n": "das"}; EIN = {"m": "einen", "f": "eine", "n": "ein"}
FIXED = [("this is a test.", "das ist ein Test.", "это проверка."), ("thank you very much.", "vielen Dank.", "большое спасибо."),
         ("good morning.", "guten Morgen.", "доброе утро."), ("how are you?", "wie geht es Ihnen?", "как у вас дела?"),
         ("yes, please.", "ja, bitte.", "да, пожалуйста."), ("no, thank you.", "nein, danke.", "нет, спасибо."),
         ("the weather is good today.", "das Wetter ist heute schön.", "сегодня хорошая погода."),
         ("the quick brown fox jumps over the lazy dog.", "der schnelle braune Fuchs springt über den faulen Hund.",
          "быстрая коричневая лиса прыгает через ленивую собаку."),
         ("see you tomorrow.", "bis morgen.", "до завтра."), ("I need a coffee.", "ich brauche einen Kaffee.", "мне нужен кофе."),
         ("please call me.", "bitte rufen Sie mich an.", "пожалуйста, позвоните мне."), ("hello world.", "hallo Welt.", "привет, мир."),
         ("good evening.", "guten Abend.", "добрый вечер."), ("this is important.", "das ist wichtig.", "это важно.")]
SPOKEN = [(e[0].lower() + e[1:] if not e.startswith("I ") else e, d, r) for e, d, r in [        # of German and Russian speech alone
         ("I am coming later today.", "ich komme heute später.", "я приду сегодня позже."),
         ("Please send the report.", "bitte schicken Sie den Bericht.", "пожалуйста, отправьте отчёт."),
         ("Thank you for the letter.", "vielen Dank für den Brief.", "большое спасибо за письмо."),
         ("We will meet tomorrow.", "wir treffen uns morgen.", "мы встретимся завтра."),
         ("The train is on time.", "der Zug ist pünktlich.", "поезд приходит вовремя."),
         ("The report is ready.", "der Bericht ist fertig.", "отчёт готов."),
         ("Best regards.", "mit freundlichen Grüßen.", "с уважением.")]]
ALONE = set(FIXED + SPOKEN)

def stranger(r):
    """a name that is in no vocabulary"""
    s = "".join(r.choice("bcdfghjklmnprstvwz") + r.choice("aeiou") for _ in range(r.choice([1, 2, 2, 2, 3]))) + r.choice(["", "", "n", "s", "x", "l"])
    return s.capitalize() if r.random() < .8 else s.upper()

def sentence(r, strangers=0.0, only=None):
    """(English, German, Russian), without the capital of the beginning"""
    c = r.choice
    def name(): return stranger(r) if r.random() < strangers else c(G.NAMES)
    t = r.randrange(29) if only is None else only
    w, o, a, p, v = c(WHEN), c(OBJ), c(ADJ), c(PLACE), c(VERB)
    oe, od, dg, orr, rg = o; we, wd, wr = w
    der, den, ein = f"{NOM[dg]} {od}", f"{ACC[dg]} {od}", EIN[dg]
    ra = a[2] + (a[3] if rg == "m" else a[4]); need = "нужен" if rg == "m" else "нужно"
    nom_a = f"{NOM[dg]} {a[1]}e {od}"; acc_a = f"{ACC[dg]} {a[1]}{'en' if dg == 'm' else 'e'} {od}"
    ein_a = f"{ein} {a[1]}{ {'m': 'en', 'f': 'e', 'n': 'es'}[dg]} {od}"
    if t == 0: return f"please {v[0]} the {oe} {we}.", f"bitte {v[1]} Sie {den} {wd}.", f"пожалуйста, {v[2]} {orr} {wr}."
    if t == 1:
        n = name(); k = r.randrange(3)
        return (f"please {['call', 'ask', 'help'][k]} {n} {we}.",
                [f"bitte rufen Sie {n} {wd} an.", f"bitte fragen Sie {n} {wd}.", f"bitte helfen Sie {n} {wd}."][k],
                f"пожалуйста, {['позвоните', 'спросите', 'помогите'][k]} {n} {wr}.")
    if t == 2: return f"I will {v[0]} the {oe} {we}.", f"ich werde {den} {wd} {v[1]}.", f"я {v[3]} {orr} {wr}."
    if t == 3: n = name(); return f"I will bring the {oe} to {n}.", f"ich werde {n} {den} bringen.", f"я принесу {orr} {n}."
    if t == 4: n = c(NUMS); return f"the meeting starts at {n[0]} {we}.", f"die Besprechung beginnt {wd} um {n[1]}.", f"встреча начинается {wr} в {n[2]}."
    if t == 5: x, y = r.sample(FOOD, 2); return f"we need {x[0]} and {y[0]}.", f"wir brauchen {x[1]} und {y[1]}.", f"нам нужны {x[2]} и {y[2]}."
    if t == 6:
        x, y, z = r.sample(FOOD, 3)
        return f"please buy {x[0]}, {y[0]} and {z[0]}.", f"bitte kaufen Sie {x[1]}, {y[1]} und {z[1]}.", f"пожалуйста, купите {x[3]}, {y[3]} и {z[3]}."
    if t == 7: return f"can you {v[0]} the {oe} {we}?", f"können Sie {den} {wd} {v[1]}?", f"вы можете {v[4]} {orr} {wr}?"
    if t == 8:
        if r.random() < .5: return f"thank you for the {oe}.", f"vielen Dank für {den}.", f"большое спасибо за {orr}."
        return f"thank you for the {a[0]} {oe}.", f"vielen Dank für {acc_a}.", f"большое спасибо за {ra} {orr}."
    if t == 9:
        n = name(); q = r.random() < .5
        return (f"hello {n}, how are you{' today' if q else ''}?", f"hallo {n}, wie geht es Ihnen{' heute' if q else ''}?",
                f"здравствуйте, {n}, как у вас{' сегодня' if q else ''} дела?")
    if t == 10:
        n = c(G.NAMES); f = n in WOMEN
        return (f"dear {n}, new line, thank you for the {oe}.", f"{'liebe' if f else 'lieber'} {n}, neue Zeile, vielen Dank für {den}.",
                f"{'уважаемая' if f else 'уважаемый'} {n}, новая строка, большое спасибо за {orr}.")
    if t == 11: n = name(); return f"best regards, {n}.", f"mit freundlichen Grüßen, {n}.", f"с уважением, {n}."
    if t == 12: return "new line.", "neue Zeile.", "новая строка."
    if t == 13: return "new paragraph.", "neuer Absatz.", "новый абзац."
    if t == 14: n = name(); return f"{n} is {p[0]} {we}.", f"{n} ist {wd} {p[1]}.", f"{n} {wr} {p[2]}."
    if t == 15: s = c(STATE); return f"the {oe} is {s[0]}.", f"{der} ist {s[1]}.", f"{orr} {s[2 if rg == 'm' else 3]}."
    if t == 16: return f"where is the {a[0]} {oe}?", f"wo ist {nom_a}?", f"где {ra} {orr}?"
    if t == 17: return f"I am {p[0]}, please call me {we}.", f"ich bin {p[1]}, bitte rufen Sie mich {wd} an.", f"я {p[2]}, пожалуйста, позвоните мне {wr}."
    if t == 18: n = name(); return f"write {'an' if a[0] == 'important' else 'a'} {a[0]} {oe} to {n}.", f"schreiben Sie {ein_a} an {n}.", f"напишите {ra} {orr} для {n}."
    if t == 19: return c(FIXED)
    if t == 20: x, y, z = c(NUMS), c(NUMS), c(NUMS); return tuple(f"{b} {x[i]} {y[i]} {z[i]}." for i, b in enumerate(("the invoice number is", "die Rechnungsnummer ist", "номер счёта")))
    if t == 21:
        n = m = name()
        while m == n: m = name()
        return f"{n} and {m} need the {oe} {we}.", f"{n} und {m} brauchen {den} {wd}.", f"для {n} и {m} {need} {orr} {wr}."
    if t == 22: x = c(WEATHER); return f"the weather is {x[0]} {we}.", f"das Wetter ist {wd} {x[1]}.", f"{wr} {x[2]} погода."
    if t == 23: p = c([PLACE[0], PLACE[1], PLACE[5]]); return f"I am working {p[0]} {we}.", f"ich arbeite {wd} {p[1]}.", f"я работаю {p[2]} {wr}."
    if t == 24: return f"do you need the {a[0]} {oe} {we}?", f"brauchen Sie {acc_a} {wd}?", f"вам {need} {ra} {orr} {wr}?"
    if t == 25: n = name(); return f"we will finish the {oe} and call {n}.", f"wir werden {den} beenden und {n} anrufen.", f"мы закончим {orr} и позвоним {n}."
    if t == 26: return c(SPOKEN)
    if t == 27 or t == 28:                                               # beyond the speech model's grammar
        n = c(NUMS)
        if r.random() < .5: return f"we meet at {n[0]}.", f"wir treffen uns um {n[1]}.", f"мы встречаемся в {n[2]}."
        return f"we meet at {n[0]} {we}.", f"wir treffen uns {wd} um {n[1]}.", f"мы встречаемся {wr} в {n[2]}."

def written(s): return s[0].upper() + s[1:]
def held_out(triple):
    """of the sentences with more than 3 English words a tenth never enters training, in no language; but the fixed ones do"""
    return triple not in ALONE and G.held_out(written(triple[0]))

def with_so(triple):
    e, d, ru = triple
    if e[-1] != "." or len(e.split()) < 4: return triple
    return "so " + e, "also, " + d, "итак, " + ru

# ---- how it is spoken ----
FILLERS = {"en": ["um"] * 5 + ["uh"] * 4 + ["er", "erm", "hmm", "like", "like", "like", "you know", "you know", "sort of", "kind of", "actually", "basically"],
           "de": ["äh"] * 4 + ["ähm"] * 4 + ["hm", "halt", "sozusagen", "quasi", "irgendwie", "eigentlich", "weißt du"],
           "ru": ["э-э"] * 4 + ["эм", "ну", "ну", "типа", "типа", "короче", "короче", "как бы", "значит", "вот", "так сказать"]}
OPENERS = {"en": ["well", "okay", "I mean", "right"], "de": ["na ja", "tja", "ich meine", "okay"], "ru": ["ну", "в общем", "короче", "ладно"]}
REPAIRS = {"en": ["no I mean", "I mean", "no", "sorry", "or rather"], "de": ["nein ich meine", "ich meine", "nein", "Entschuldigung", "besser gesagt"],
           "ru": ["нет", "то есть", "вернее", "простите"]}
def classes(i):
    return [list(G.NAMES), [x[i] for x in NUMS], [x[i] for x in FOOD], [x[3] for x in FOOD] if i == 2 else [x[0] for x in OBJ] if i == 0 else []] \
         + ([[x[i] for x in DAYS]] if i < 2 else [])
CLASSES = {l: [set(c) for c in classes(i) if c] for i, l in enumerate(LANGUAGES)}
NUMBER_WORDS = {x for n in NUMS for x in n}

def bare(w): return w.strip(",.?!")

def spoken(r, i, triple, level, punctuated, strangers):
    """the words of a sentence as somebody says it who searches for words; punctuation inside is at most `punctuated`"""
    l = LANGUAGES[i]; w = triple[i].split(); out = list(w)
    if "an" in out and r.random() < .5: out[out.index("an")] = "a"       # as the speech model's grammar has it
    if r.random() >= level: return out
    def mark(p=.7): return "," if punctuated and r.random() < p else ""
    def gap(): return r.choice([",", ",", "...", " -", " —", ""]) if punctuated else ""
    # from the end to the beginning, so that the places stay
    kinds = []
    if r.random() < .12: kinds.append("repair")
    if r.random() < .40: kinds.append(r.choice(["restart", "restart", "other", "stutter"]))
    if r.random() < .75 or not kinds: kinds.append("fillers")
    for kind in kinds:
        if kind == "repair":
            places = [(k, c) for k, x in enumerate(out) for c in CLASSES[l] if bare(x) in c]
            if not places or "номер" in w or "number" in w or "Rechnungsnummer" in w: continue
            k, c = r.choice(places); wrong = r.choice(sorted(c - {bare(out[k])} - {bare(x) for x in out}) or [None])
            if wrong: out[k:k] = [wrong + mark()] + (r.choice(REPAIRS[l]) + mark(.5)).split()
        elif kind == "restart":
            k = r.randint(1, max(1, min(4, len(out) - 2)))
            if len(out) > 2: cut = [bare(x) if j == k - 1 else x for j, x in enumerate(out[:k])]; cut[-1] += gap(); out[:0] = cut
        elif kind == "other":
            o = sentence(r, strangers)[i].split()
            if len(o) > 3:
                k = r.randint(1, min(2, len(o) - 2))               # a longer one may be a sentence of its own
                if o[:k] != out[:k]: cut = o[:k]; cut[-1] = bare(cut[-1]) + gap(); out[:0] = cut
        elif kind == "stutter":
            k = r.randrange(0, len(out) - 1) if len(out) > 2 else None
            if k is not None and bare(out[k]) not in NUMBER_WORDS and bare(out[k]) == out[k]: out[k:k] = [out[k] + mark(.3)]
        elif kind == "fillers":
            for _ in range(r.choice([1, 1, 1, 2, 2, 3])):
                k = r.choice([0, 0, r.randrange(len(out))])
                f = r.choice(OPENERS[l]) if k == 0 and r.random() < .2 else r.choice(FILLERS[l])
                if k and punctuated and out[k - 1][-1] not in ",-—." and r.random() < .6: out[k - 1] += ","
                out[k:k] = (f + (r.choice([",", ",", ",", "...", ""]) if punctuated else "")).split()
    return out

def transcript(r, i, triples, level=.75, strangers=0.0):
    """what the recogniser makes of it: with punctuation and capitals, without, or with some of them"""
    style = r.random(); parts = []
    for t in triples:
        s = style if r.random() < .9 else r.random()
        words = spoken(r, i, t, level, s < .55 or s > .85 and r.random() < .5, strangers)
        if s < .55: words[0] = written(words[0])                              # as a good recogniser writes
        elif s < .85:                                                        # nothing but words
            words = [x if bare(x) == x else bare(x) for x in words]
            if s < .75: words = [x.lower() if not known_stranger(x) else x for x in words]
        else:                                                                # half of it
            words = [bare(x) if r.random() < .5 else x for x in words]
            if r.random() < .5: words[0] = written(words[0])
            if r.random() < .4: words = [x.lower() if not known_stranger(x) else x for x in words]
        parts += [x for x in words if x]
    return " ".join(parts)

_KNOWN = set()
def known_stranger(x):
    return bare(x) not in _KNOWN and bare(x).lower() not in _KNOWN

def words():
    """all words of all languages, in the form that stands in the middle of a sentence"""
    r = random.Random(1); ws = set()
    for k in range(12000):
        for s in sentence(r, only=k % 29): ws.update(bare(x) for x in s.split())
    for l in LANGUAGES:
        for f in FILLERS[l] + OPENERS[l] + REPAIRS[l]: ws.update(f.split())
    return sorted(ws | {"a", "an", "so", "also", "итак"})
_KNOWN.update(words())

if __name__ == "__main__":
    r = random.Random(int(sys.argv[1]) if len(sys.argv) > 1 else 0)
    ours = {written(sentence(r)[0]) for _ in range(400000)}; theirs = {G.en_sentence(r) for _ in range(200000)}
    print(len(_KNOWN), "words,", len(ours), "sentences; of the speech model's not ours:", sorted(theirs - ours)[:5], len(theirs - ours))
    for t in range(29): print(*map(written, sentence(r, only=t)), sep=" | ")
    for _ in range(30):
        i = r.choice([0, 0, 1, 2]); t = [sentence(r, .1) for _ in range(r.choice([1, 1, 2]))]
        print(transcript(r, i, t), "->", " ".join(written(x[i]) for x in t))
