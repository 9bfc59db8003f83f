#include "Catalogue.h"

#include "SqlHelpers.h"

namespace {

// Activities of the municipal commerce register, by their six-digit codes of
// the national activity classifier (the ones a commercial premises can hold:
// industry, construction, trade and services).
struct Activity {
    int code;
    const char* name;
};

const Activity kActivities[] = {
    // Industry.
    {101011, "Matanza de ganado bovino"},
    {101040, "Fabricación de fiambres y embutidos"},
    {105010, "Elaboración de leches y productos lácteos deshidratados"},
    {105020, "Elaboración de quesos"},
    {105030, "Elaboración industrial de helados"},
    {107110, "Elaboración de galletitas y bizcochos"},
    {107121, "Elaboración industrial de productos de panadería, excepto galletitas y bizcochos"},
    {107129, "Elaboración de productos de panadería n.c.p."},
    {107410, "Elaboración de pastas alimentarias frescas"},
    {107420, "Elaboración de pastas alimentarias secas"},
    {107500, "Elaboración de comidas preparadas para reventa"},
    {110412, "Fabricación de sodas y aguas"},
    {161001, "Aserrado y cepillado de madera nativa"},
    {181101, "Impresión de diarios y revistas"},
    {181109, "Impresión n.c.p., excepto de diarios y revistas"},
    {222090, "Fabricación de productos plásticos en formas básicas y artículos de plástico n.c.p., "
             "excepto muebles"},
    {251101, "Fabricación de carpintería metálica"},
    {251102, "Fabricación de productos metálicos para uso estructural"},
    {310010, "Fabricación de muebles y partes de muebles, principalmente de madera"},
    // Construction.
    {410011, "Construcción, reforma y reparación de edificios residenciales"},
    {410021, "Construcción, reforma y reparación de edificios no residenciales"},
    {421000, "Construcción, reforma y reparación de obras de infraestructura para el transporte"},
    {431100, "Demolición y voladura de edificios y de sus partes"},
    {432190, "Instalación, ejecución y mantenimiento de instalaciones eléctricas, electromecánicas "
             "y electrónicas n.c.p."},
    {432200, "Instalaciones de gas, agua, sanitarios y de climatización, con sus artefactos "
             "conexos"},
    {433010, "Instalaciones de carpintería, herrería de obra y artística"},
    {433020, "Terminación y revestimiento de paredes y pisos"},
    {433030, "Colocación de cristales en obra"},
    {433040, "Pintura y trabajos de decoración"},
    {433090, "Terminación de edificios n.c.p."},
    {439910, "Hincado de pilotes, cimentación y otros trabajos de hormigón armado"},
    {439990, "Actividades especializadas de construcción n.c.p."},
    // Motor vehicles.
    {451110, "Venta de autos, camionetas y utilitarios nuevos"},
    {451190, "Venta de vehículos automotores nuevos n.c.p."},
    {451210, "Venta de autos, camionetas y utilitarios usados"},
    {452101, "Lavado automático y manual de vehículos automotores"},
    {452210, "Reparación de cámaras y cubiertas"},
    {452300, "Instalación y reparación de parabrisas, lunetas y ventanillas, cerraduras no "
             "eléctricas y grabado de cristales"},
    {452401, "Reparaciones eléctricas del tablero e instrumental, reparación y recarga de "
             "baterías"},
    {452500, "Tapizado y retapizado de automotores"},
    {452600, "Reparación y pintura de carrocerías, colocación y reparación de guardabarros y "
             "protecciones exteriores"},
    {452800, "Mantenimiento y reparación del motor n.c.p., mecánica integral"},
    {452990, "Mantenimiento y reparación de vehículos automotores n.c.p."},
    {453100, "Venta al por mayor de partes, piezas y accesorios de vehículos automotores"},
    {453210, "Venta al por menor de cámaras y cubiertas"},
    {453220, "Venta al por menor de baterías"},
    {453291, "Venta al por menor de partes, piezas y accesorios nuevos n.c.p."},
    {453292, "Venta al por menor de partes, piezas y accesorios usados n.c.p."},
    {454010, "Venta de motocicletas y de sus partes, piezas y accesorios"},
    {454020, "Mantenimiento y reparación de motocicletas"},
    // Wholesale.
    {463111, "Venta al por mayor de productos lácteos"},
    {463112, "Venta al por mayor de fiambres y quesos"},
    {463121, "Venta al por mayor de carnes rojas y derivados"},
    {463129, "Venta al por mayor de aves, huevos y productos de granja y de la caza n.c.p."},
    {463130, "Venta al por mayor de pescado"},
    {463140, "Venta al por mayor y empaque de frutas, de legumbres y hortalizas frescas"},
    {463151, "Venta al por mayor de pan, productos de confitería y pastas frescas"},
    {463152, "Venta al por mayor de azúcar"},
    {463153, "Venta al por mayor de aceites y grasas"},
    {463154, "Venta al por mayor de café, té, yerba mate y otras infusiones y especias y "
             "condimentos"},
    {463160, "Venta al por mayor de chocolates, golosinas y productos para kioscos y polirrubros "
             "n.c.p., excepto cigarrillos"},
    {463170, "Venta al por mayor de alimentos balanceados para animales"},
    {463191, "Venta al por mayor de frutas, legumbres y cereales secos y en conserva"},
    {463211, "Venta al por mayor de vino"},
    {463212, "Venta al por mayor de bebidas espiritosas"},
    {463219, "Venta al por mayor de bebidas alcohólicas n.c.p."},
    {463220, "Venta al por mayor de bebidas no alcohólicas"},
    {463300, "Venta al por mayor de cigarrillos y productos de tabaco"},
    {464111, "Venta al por mayor de tejidos (telas)"},
    {464112, "Venta al por mayor de artículos de mercería"},
    {464113, "Venta al por mayor de mantelería, ropa de cama y artículos textiles para el hogar"},
    {464119, "Venta al por mayor de productos textiles n.c.p."},
    {464122, "Venta al por mayor de medias y prendas de punto"},
    {464129, "Venta al por mayor de prendas de vestir n.c.p."},
    {464130, "Venta al por mayor de calzado excepto el ortopédico"},
    {464150, "Venta al por mayor de uniformes y ropa de trabajo"},
    {464211, "Venta al por mayor de libros y publicaciones"},
    {464212, "Venta al por mayor de diarios y revistas"},
    {464221, "Venta al por mayor de papel y productos de papel y cartón excepto envases"},
    {464222, "Venta al por mayor de envases de papel y cartón"},
    {464223, "Venta al por mayor de artículos de librería y papelería"},
    {464310, "Venta al por mayor de productos farmacéuticos"},
    {464320, "Venta al por mayor de productos cosméticos, de tocador y de perfumería"},
    {464330, "Venta al por mayor de instrumental médico y odontológico y artículos ortopédicos"},
    {464340, "Venta al por mayor de productos veterinarios"},
    {464410, "Venta al por mayor de artículos de óptica y de fotografía"},
    {464420, "Venta al por mayor de artículos de relojería, joyería y fantasías"},
    {464501, "Venta al por mayor de electrodomésticos y artefactos para el hogar excepto equipos "
             "de audio y video"},
    {464502, "Venta al por mayor de equipos de audio, video y televisión"},
    {464610, "Venta al por mayor de muebles excepto de oficina, artículos de mimbre y corcho, "
             "colchones y somieres"},
    {464620, "Venta al por mayor de artículos de iluminación"},
    {464631, "Venta al por mayor de artículos de vidrio"},
    {464632, "Venta al por mayor de artículos de bazar y menaje excepto de vidrio"},
    {464920, "Venta al por mayor de materiales y productos de limpieza"},
    {464930, "Venta al por mayor de juguetes"},
    {464940, "Venta al por mayor de bicicletas y rodados similares"},
    {464991, "Venta al por mayor de artículos de esparcimiento y deportes"},
    {465100, "Venta al por mayor de equipos, periféricos, accesorios y programas informáticos"},
    {465210, "Venta al por mayor de equipos de telefonía y comunicaciones"},
    {465220, "Venta al por mayor de componentes electrónicos"},
    {465610, "Venta al por mayor de muebles e instalaciones para oficinas"},
    {466110, "Venta al por mayor de combustibles y lubricantes para automotores"},
    {466121, "Fraccionamiento y distribución de gas licuado"},
    {466310, "Venta al por mayor de aberturas"},
    {466320, "Venta al por mayor de productos de madera excepto muebles"},
    {466330, "Venta al por mayor de artículos de ferretería y materiales eléctricos"},
    {466340, "Venta al por mayor de pinturas y productos conexos"},
    {466350, "Venta al por mayor de cristales y espejos"},
    {466360, "Venta al por mayor de artículos para plomería, instalación de gas y calefacción"},
    {466391, "Venta al por mayor de artículos de loza, cerámica y porcelana de uso en "
             "construcción"},
    {466399, "Venta al por mayor de artículos para la construcción n.c.p."},
    {466931, "Venta al por mayor de artículos de plástico"},
    {466932, "Venta al por mayor de abonos, fertilizantes y plaguicidas"},
    {469010, "Venta al por mayor de insumos agropecuarios diversos"},
    {469090, "Venta al por mayor de mercancías n.c.p."},
    // Retail.
    {471110, "Venta al por menor en hipermercados"},
    {471120, "Venta al por menor en supermercados"},
    {471130, "Venta al por menor en minimercados"},
    {471190, "Venta al por menor en kioscos, polirrubros y comercios no especializados n.c.p., "
             "excepto tabaco, cigarros y cigarrillos"},
    {471900, "Venta al por menor en comercios no especializados, sin predominio de productos "
             "alimenticios y bebidas"},
    {472111, "Venta al por menor de productos lácteos"},
    {472112, "Venta al por menor de fiambres y embutidos"},
    {472120, "Venta al por menor de productos de almacén y dietética"},
    {472130, "Venta al por menor de carnes rojas, menudencias y chacinados frescos"},
    {472140, "Venta al por menor de huevos, carne de aves y productos de granja y de la caza"},
    {472150, "Venta al por menor de pescados y productos de la pesca"},
    {472160, "Venta al por menor de frutas, legumbres y hortalizas frescas"},
    {472171, "Venta al por menor de pan y productos de panadería"},
    {472172, "Venta al por menor de bombones, golosinas y demás productos de confitería"},
    {472190, "Venta al por menor de productos alimenticios n.c.p., en comercios especializados"},
    {472200, "Venta al por menor de bebidas en comercios especializados"},
    {472300, "Venta al por menor de tabaco en comercios especializados"},
    {473000, "Venta al por menor de combustible para vehículos automotores y motocicletas"},
    {474010, "Venta al por menor de equipos, periféricos, accesorios y programas informáticos"},
    {474020, "Venta al por menor de aparatos de telefonía y comunicación"},
    {475110, "Venta al por menor de hilados, tejidos y artículos de mercería"},
    {475120, "Venta al por menor de confecciones para el hogar"},
    {475190, "Venta al por menor de artículos textiles n.c.p. excepto prendas de vestir"},
    {475210, "Venta al por menor de aberturas"},
    {475220, "Venta al por menor de maderas y artículos de madera y corcho, excepto muebles"},
    {475230, "Venta al por menor de artículos de ferretería y materiales eléctricos"},
    {475240, "Venta al por menor de pinturas y productos conexos"},
    {475250, "Venta al por menor de artículos para plomería e instalación de gas"},
    {475260, "Venta al por menor de cristales, espejos, mamparas y cerramientos"},
    {475270, "Venta al por menor de papeles para pared, revestimientos para pisos y artículos "
             "similares para la decoración"},
    {475290, "Venta al por menor de materiales de construcción n.c.p."},
    {475300, "Venta al por menor de electrodomésticos, artefactos para el hogar y equipos de "
             "audio y video"},
    {475410, "Venta al por menor de muebles para el hogar, artículos de mimbre y corcho"},
    {475420, "Venta al por menor de colchones y somieres"},
    {475430, "Venta al por menor de artículos de iluminación"},
    {475440, "Venta al por menor de artículos de bazar y menaje"},
    {475490, "Venta al por menor de artículos para el hogar n.c.p."},
    {476110, "Venta al por menor de libros"},
    {476120, "Venta al por menor de diarios y revistas"},
    {476130, "Venta al por menor de papel, cartón, materiales de embalaje y artículos de "
             "librería"},
    {476200, "Venta al por menor de CD's y DVD's de audio y video grabados"},
    {476310, "Venta al por menor de equipos y artículos deportivos"},
    {476320, "Venta al por menor de armas, artículos para la caza y pesca"},
    {476400, "Venta al por menor de juguetes, artículos de cotillón y juegos de mesa"},
    {477110, "Venta al por menor de ropa interior, medias, prendas para dormir y para la playa"},
    {477120, "Venta al por menor de uniformes escolares y guardapolvos"},
    {477130, "Venta al por menor de indumentaria para bebés y niños"},
    {477140, "Venta al por menor de indumentaria deportiva"},
    {477150, "Venta al por menor de prendas de cuero"},
    {477190, "Venta al por menor de prendas y accesorios de vestir n.c.p."},
    {477210, "Venta al por menor de artículos de talabartería y artículos regionales"},
    {477220, "Venta al por menor de calzado, excepto el ortopédico y el deportivo"},
    {477230, "Venta al por menor de calzado deportivo"},
    {477290, "Venta al por menor de artículos de marroquinería, paraguas y similares n.c.p."},
    {477310, "Venta al por menor de productos farmacéuticos y de herboristería"},
    {477320, "Venta al por menor de productos cosméticos, de tocador y de perfumería"},
    {477330, "Venta al por menor de instrumental médico y odontológico y artículos ortopédicos"},
    {477410, "Venta al por menor de artículos de óptica y fotografía"},
    {477420, "Venta al por menor de artículos de relojería y joyería"},
    {477430, "Venta al por menor de bijouterie y fantasía"},
    {477440, "Venta al por menor de flores, plantas, semillas, abonos, fertilizantes y otros "
             "productos de vivero"},
    {477450, "Venta al por menor de materiales y productos de limpieza"},
    {477460, "Venta al por menor de fuel oil, gas en garrafas, carbón y leña"},
    {477470, "Venta al por menor de productos veterinarios, animales domésticos y alimento "
             "balanceado para mascotas"},
    {477480, "Venta al por menor de obras de arte"},
    {477490, "Venta al por menor de artículos nuevos n.c.p."},
    {477810, "Venta al por menor de muebles usados"},
    {477820, "Venta al por menor de libros, revistas y similares usados"},
    {477830, "Venta al por menor de antigüedades"},
    {477840, "Venta al por menor de oro, monedas, sellos y similares"},
    {477890, "Venta al por menor de artículos usados n.c.p. excepto automotores y motocicletas"},
    {478010, "Venta al por menor de alimentos, bebidas y tabaco en puestos móviles y mercados"},
    {478090, "Venta al por menor de productos n.c.p. en puestos móviles y mercados"},
    {479101, "Venta al por menor por internet"},
    {479109, "Venta al por menor por correo, televisión y otros medios de comunicación n.c.p."},
    {479900, "Venta al por menor no realizada en establecimientos n.c.p."},
    // Transport and storage.
    {492110, "Servicio de transporte automotor urbano y suburbano regular de pasajeros"},
    {492120, "Servicios de transporte automotor de pasajeros mediante taxis y remises, alquiler "
             "de autos con chofer"},
    {492130, "Servicio de transporte escolar"},
    {492210, "Servicios de mudanza"},
    {492221, "Servicio de transporte automotor de cereales"},
    {492229, "Servicio de transporte automotor de mercaderías a granel n.c.p."},
    {492280, "Servicio de transporte automotor urbano de carga n.c.p."},
    {492290, "Servicio de transporte automotor de cargas n.c.p."},
    {521020, "Servicios de almacenamiento y depósito en cámaras frigoríficas"},
    {521030, "Servicios de almacenamiento y depósito en silos"},
    {522091, "Servicios de gestión aduanera realizados por despachantes de aduana"},
    {530010, "Servicio de correo postal"},
    {530090, "Servicios de mensajerías"},
    // Lodging and food.
    {551010, "Servicios de alojamiento por hora"},
    {551021, "Servicios de alojamiento en pensiones"},
    {551022, "Servicios de alojamiento en hoteles, hosterías y residenciales similares, excepto "
             "por hora, que incluyen servicio de restaurante al público"},
    {551023, "Servicios de alojamiento en hoteles, hosterías y residenciales similares, excepto "
             "por hora, que no incluyen servicio de restaurante al público"},
    {551090, "Servicios de hospedaje temporal n.c.p."},
    {552000, "Servicios de alojamiento en campings"},
    {561011, "Servicios de restaurantes y cantinas sin espectáculo"},
    {561012, "Servicios de restaurantes y cantinas con espectáculo"},
    {561013, "Servicios de fast food y locales de venta de comidas y bebidas al paso"},
    {561014, "Servicios de expendio de bebidas en bares"},
    {561019, "Servicios de expendio de comidas y bebidas en establecimientos con servicio de "
             "mesa y/o en mostrador n.c.p."},
    {561020, "Servicios de preparación de comidas para llevar"},
    {561030, "Servicio de expendio de helados"},
    {562010, "Servicios de preparación de comidas para empresas y eventos"},
    {562091, "Servicios de cantinas con atención exclusiva a los empleados o estudiantes dentro "
             "de empresas o establecimientos educativos"},
    {562099, "Servicios de comidas n.c.p."},
    // Information and communication.
    {581100, "Edición de libros, folletos, y otras publicaciones"},
    {591110, "Producción de filmes y videocintas"},
    {601000, "Emisión y retransmisión de radio"},
    {611010, "Servicios de locutorios"},
    {614010, "Servicios de proveedores de acceso a internet"},
    {620101, "Desarrollo y puesta a punto de productos de software"},
    {620104, "Servicios de consultores en equipo de informática"},
    {620900, "Servicios de informática n.c.p."},
    {631120, "Hospedaje de datos"},
    {631200, "Portales web"},
    // Insurance, real estate, professions.
    {662020, "Servicios de productores y asesores de seguros"},
    {681010, "Servicios de alquiler y explotación de inmuebles para fiestas, convenciones y "
             "otros eventos similares"},
    {681020, "Servicios de alquiler de consultorios médicos"},
    {681098, "Servicios inmobiliarios realizados por cuenta propia, con bienes urbanos propios o "
             "arrendados n.c.p."},
    {682010, "Servicios de administración de consorcios de edificios"},
    {682091, "Servicios prestados por inmobiliarias"},
    {691001, "Servicios jurídicos"},
    {691002, "Servicios notariales"},
    {692000, "Servicios de contabilidad, auditoría y asesoría fiscal"},
    {702092, "Servicios de asesoramiento, dirección y gestión empresarial n.c.p."},
    {711001, "Servicios relacionados con la construcción"},
    {711009, "Servicios de arquitectura e ingeniería y servicios conexos de asesoramiento "
             "técnico n.c.p."},
    {712000, "Ensayos y análisis técnicos"},
    {731001, "Servicios de comercialización de tiempo y espacio publicitario"},
    {731009, "Servicios de publicidad n.c.p."},
    {741000, "Servicios de diseño especializado"},
    {742000, "Servicios de fotografía"},
    {749009, "Actividades profesionales, científicas y técnicas n.c.p."},
    {750000, "Servicios veterinarios"},
    // Rental and business support.
    {771110, "Alquiler de automóviles sin conductor"},
    {772010, "Alquiler de videos y video juegos"},
    {772091, "Alquiler de prendas de vestir"},
    {772099, "Alquiler de efectos personales y enseres domésticos n.c.p."},
    {791100, "Servicios minoristas de agencias de viajes"},
    {791200, "Servicios mayoristas de agencias de viajes"},
    {801010, "Servicios de transporte de caudales y objetos de valor"},
    {801020, "Servicios de sistemas de seguridad"},
    {801090, "Servicios de seguridad e investigación n.c.p."},
    {811000, "Servicio combinado de apoyo a edificios"},
    {812010, "Servicios de limpieza general de edificios"},
    {812020, "Servicios de desinfección y exterminio de plagas en el ámbito urbano"},
    {812090, "Servicios de limpieza n.c.p."},
    {813000, "Servicios de jardinería y mantenimiento de espacios verdes"},
    {821900, "Servicios de fotocopiado, preparación de documentos y otros servicios de apoyo de "
             "oficinas"},
    {822000, "Servicios de call center"},
    {823000, "Servicios de organización de convenciones y exposiciones comerciales, excepto "
             "culturales y deportivos"},
    {829100, "Servicios de agencias de cobro y calificación crediticia"},
    {829200, "Servicios de envase y empaque"},
    {829900, "Servicios empresariales n.c.p."},
    // Education and health.
    {851010, "Guarderías y jardines maternales"},
    {854910, "Enseñanza de idiomas"},
    {854920, "Enseñanza de cursos relacionados con informática"},
    {854950, "Enseñanza de gimnasia, deportes y actividades físicas"},
    {854960, "Enseñanza artística"},
    {854990, "Servicios de enseñanza n.c.p."},
    {855000, "Servicios de apoyo a la educación"},
    {862110, "Servicios de consulta médica"},
    {862200, "Servicios odontológicos"},
    {863110, "Servicios de prácticas de diagnóstico en laboratorios"},
    {863120, "Servicios de prácticas de diagnóstico por imagen"},
    {864000, "Servicios de emergencias y traslados"},
    {869010, "Servicios de rehabilitación física"},
    {869090, "Servicios relacionados con la salud humana n.c.p."},
    {870210, "Servicios de atención a ancianos con alojamiento"},
    // Entertainment and personal services.
    {900011, "Producción de espectáculos teatrales y musicales"},
    {920001, "Servicios de recepción de apuestas de quiniela, lotería y similares"},
    {920009, "Servicios relacionados con juegos de azar y apuestas n.c.p."},
    {931010, "Servicios de organización, dirección y gestión de prácticas deportivas en clubes"},
    {931020, "Explotación de instalaciones deportivas, excepto clubes"},
    {931090, "Servicios para la práctica deportiva n.c.p."},
    {939010, "Servicios de parques de diversiones y parques temáticos"},
    {939020, "Servicios de salones de juegos"},
    {939030, "Servicios de salones de baile, discotecas y similares"},
    {939090, "Servicios de entretenimiento n.c.p."},
    {951100, "Reparación y mantenimiento de equipos informáticos"},
    {951200, "Reparación y mantenimiento de equipos de comunicación"},
    {952100, "Reparación de artículos eléctricos y electrónicos de uso doméstico"},
    {952200, "Reparación de calzado y artículos de marroquinería"},
    {952300, "Reparación de tapizados y muebles"},
    {952910, "Reforma y reparación de cerraduras, duplicación de llaves"},
    {952920, "Reparación de relojes y joyas"},
    {952990, "Reparación de efectos personales y enseres domésticos n.c.p."},
    {960101, "Servicios de limpieza de prendas prestado por tintorerías rápidas"},
    {960102, "Lavado y limpieza de artículos de tela, cuero y/o de piel, incluso la limpieza en "
             "seco"},
    {960201, "Servicios de peluquería"},
    {960202, "Servicios de tratamiento de belleza, excepto los de peluquería"},
    {960300, "Pompas fúnebres y servicios conexos"},
    {960910, "Servicios de centros de estética, spa y similares"},
    {960990, "Servicios personales n.c.p."},
};

// The general rate of an activity (percent, comma decimal), by the first two
// digits of its code: the register's rate table by branch.
struct BranchRate {
    int fromPrefix;
    int toPrefix;
    const char* rate;
};

const BranchRate kRates[] = {
    {10, 33, "1,20"}, // industry
    {41, 43, "2,40"}, // construction
    {45, 47, "3,60"}, // trade
    {49, 53, "2,40"}, // transport and storage
    {55, 56, "3,60"}, // lodging and food
    {58, 63, "3,60"}, // information and communication
    {64, 66, "6,00"}, // finance and insurance
    {68, 82, "3,60"}, // real estate, professions, business support
    {85, 85, "2,00"}, // education
    {86, 88, "2,00"}, // health
    {90, 93, "6,00"}, // entertainment and gambling
    {94, 96, "3,60"}, // personal services
};

const char* rateOf(int code)
{
    const int prefix = code / 10000;
    for (const BranchRate& r : kRates)
        if (prefix >= r.fromPrefix && prefix <= r.toPrefix)
            return r.rate;
    return "3,60";
}

// Voucher kinds of the annexes: a four-character code and its description.
// The first row is the adjustment the forms write themselves; codes of credit
// notes begin with "NC", which the totals count as negative.
struct Voucher {
    const char* code;
    const char* description;
};

const Voucher kVouchers[] = {
    {"AJUS", "Ajuste"},
    {"FACA", "Factura A"},
    {"FACB", "Factura B"},
    {"FACC", "Factura C"},
    {"FACM", "Factura M"},
    {"FACE", "Factura E"},
    {"RECA", "Recibo A"},
    {"RECB", "Recibo B"},
    {"RECC", "Recibo C"},
    {"NDBA", "Nota de Débito A"},
    {"NDBB", "Nota de Débito B"},
    {"NDBC", "Nota de Débito C"},
    {"NCRA", "Nota de Crédito A"},
    {"NCRB", "Nota de Crédito B"},
    {"NCRC", "Nota de Crédito C"},
    {"TIQU", "Tique"},
    {"TIQF", "Tique Factura"},
    {"LIQP", "Liquidación de Compra Primaria"},
    {"CRET", "Constancia de Retención"},
    {"CPER", "Constancia de Percepción"},
    {"OTRO", "Otros"},
};

const char* const kMunicipalities[] = {
    "Capital",    "Godoy Cruz", "Guaymallén",     "Las Heras", "Lavalle",    "Luján de Cuyo",
    "Maipú",      "San Martín", "Rivadavia",      "Junín",     "Tunuyán",    "Tupungato",
    "San Carlos", "San Rafael", "General Alvear", "Malargüe",  "Santa Rosa", "La Paz",
};

// The forms an installation comes with. F977 and F978 keep the names of the
// release before the annexes were called "Deducidas"; the start-up upgrade
// renames them, as it does in the field.
struct Form {
    const char* id;
    const char* nombre;
};

const Form kForms[] = {
    {"F976", "T.I.S.S.H. Régimen General DDJJ Mensual: F976"},
    {"F2001", "T.I.S.S.H. Procom DDJJ Mensual: F2001"},
    {"F977", "T.I.S.S.H. Anexo Retenciones Sufridas: F977"},
    {"F978", "T.I.S.S.H. Anexo Percepciones Sufridas: F978"},
    {"F986", "T.I.S.S.H. Agentes de Retención DDJJ Mensual: F986"},
    {"F988", "T.I.S.S.H. Agentes de Percepción DDJJ Mensual: F988"},
};

// The envelope codes of the submission file. For the annexes "0089" and
// "0090" the concept is rewritten by the premises' regime when the file is
// written ("0012-" general, "0011-" Procom); the rows hold the general one.
struct FormCode {
    int id;
    const char* form;
    const char* tipoImponible;
    const char* impuestoConcepto;
    const char* codigoFormulario;
};

// clang-format off
const FormCode kFormCodes[] = {
    {1, "F976", "0008", "0012-0001", "0076"},
    {2, "F2001", "0008", "0011-0001", "2001"},
    {3, "F977", "0008", "0012-0008", "0089"},
    {4, "F978", "0008", "0012-0009", "0090"},
    {5, "F986", "0008", "0015-0009", "0086"},
    {6, "F988", "0008", "0024-0010", "0088"},
};
// clang-format on

struct Option {
    const char* nombre;
    const char* valor;
};

// Bounds of the year selection.
const Option kOptions[] = {
    {"AnioMinimo", "2000"},
    {"AnioMaximo", "2050"},
};

QString text(const char* utf8)
{
    return QString::fromUtf8(utf8);
}

} // namespace

QString LeyendaNuevo(const QString& nombre)
{
    return QStringLiteral("Nuevo - ") + nombre;
}

QString LeyendaGenerado(const QString& nombre)
{
    return QStringLiteral("Formulario Generado - ") + nombre;
}

QStringList CatalogueStatements()
{
    QStringList out;
    for (const Activity& a : kActivities)
        out << QStringLiteral("INSERT INTO tActividades (idTActividad, Nombre, Alicuota) "
                              "VALUES (%1, %2, %3)")
                   .arg(QString::number(a.code), Quoted(text(a.name)),
                        Quoted(text(rateOf(a.code))));
    int id = 0;
    for (const Voucher& v : kVouchers) {
        const QString code = text(v.code);
        const QString description = text(v.description);
        out << QStringLiteral("INSERT INTO tComprobantes (idTComprobante, valor, descripcion, "
                              "Nombre) VALUES (%1, %2, %3, %4)")
                   .arg(QString::number(++id), Quoted(code), Quoted(description),
                        Quoted(code + QStringLiteral(" - ") + description));
    }
    id = 0;
    for (const char* name : kMunicipalities)
        out << QStringLiteral("INSERT INTO tMunicipalidades (idTMunicipalidad, Nombre) "
                              "VALUES (%1, %2)")
                   .arg(QString::number(++id), Quoted(text(name)));
    for (const Form& f : kForms) {
        const QString nombre = text(f.nombre);
        out << QStringLiteral("INSERT INTO Formularios (idFormulario, Nombre, LeyendaNuevo, "
                              "LeyendaGenerado) VALUES (%1, %2, %3, %4)")
                   .arg(Quoted(text(f.id)), Quoted(nombre), Quoted(LeyendaNuevo(nombre)),
                        Quoted(LeyendaGenerado(nombre)));
    }
    for (const FormCode& c : kFormCodes)
        out << QStringLiteral("INSERT INTO tCodigos_Formularios (Id, idFormulario, "
                              "tipo_imponible, impuesto_concepto, codigo_formulario) "
                              "VALUES (%1, %2, %3, %4, %5)")
                   .arg(QString::number(c.id), Quoted(text(c.form)),
                        Quoted(text(c.tipoImponible)), Quoted(text(c.impuestoConcepto)),
                        Quoted(text(c.codigoFormulario)));
    for (const Option& o : kOptions)
        out << QStringLiteral("INSERT INTO Opciones (Nombre, Valor) VALUES (%1, %2)")
                   .arg(Quoted(text(o.nombre)), Quoted(text(o.valor)));
    return out;
}
